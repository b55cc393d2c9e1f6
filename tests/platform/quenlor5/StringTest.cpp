#include <Quenlor/QnStringUtilities.h>
#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>

#include <gmock/gmock.h>

#include <climits>
#include <cstdarg>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace
{
using Quenlor::QnStringUtilities;
using Quenlor::QuenlorStatus;
using Quenlor::Utf8String;
using Quenlor::WString;
using ::testing::ElementsAre;

TEST(Utf8String, ComparesWithEveryKindOfTextByUnsignedBytes)
{
    const auto compare = [](const auto& text)
    {
        const Utf8String b{"b"};
        EXPECT_TRUE(b == text && text == b && !(b != text) && b <= text && !(text < b));
        EXPECT_TRUE(Utf8String{"a"} < text && text > Utf8String{"a"} && Utf8String{"\xC3\xA4"} > text);
    };
    compare("b");
    compare(std::string{"b"});
    compare(std::string_view{"b"});
    compare(Utf8String{"b"});
    EXPECT_EQ(Utf8String{static_cast<const char*>(nullptr)}, static_cast<const char*>(nullptr));
}

TEST(Utf8String, KeepsNuls)
{
    const std::string bytes{"a\0b", 3};
    const Utf8String text{bytes};
    EXPECT_EQ((std::ostringstream{} << text).str(), bytes);
    EXPECT_EQ(text, bytes);
    EXPECT_EQ(text.ToStdString(), "a");
    EXPECT_NE(text, "a");
    EXPECT_EQ(std::hash<Utf8String>{}(text), std::hash<std::string_view>{}(bytes));
#ifdef __cpp_lib_format
    EXPECT_EQ(std::format("{:>4}", Utf8String{"a"}), "   a");
#endif
}

TEST(ReplaceAll, CountsAndDoesNotRescanWhatItInserted)
{
    Utf8String text = "aXbXX";
    EXPECT_EQ(text.ReplaceAll("X", "XX"), 3U);
    EXPECT_EQ(text, "aXXbXXXX");
    EXPECT_EQ(text.ReplaceAll("XX", nullptr), 3U);
    EXPECT_EQ(text, "ab");
    EXPECT_EQ(text.ReplaceAll("", "y"), 0U);
}

Utf8String Formatted(Utf8String text, const char* format, ...)
{
    std::va_list args;
    va_start(args, format);
    text.VSprintf(format, args);
    va_end(args);
    return text;
}

TEST(VSprintf, ReplacesTextOfAnyLength)
{
    EXPECT_EQ(Formatted("old", "%02d.%02d", 7, 115), "07.115");
    EXPECT_EQ(Formatted("old", "%5000s", ""), std::string(5000, ' '));
    EXPECT_EQ(Formatted("old", "%s", ""), "");
}

TEST(ContainsI, IgnoresLetterCaseBeyondAscii)
{
    const WString path = LR"(D:\Build\OUT\Größe\ЖУРНАЛ.exe)";
    EXPECT_TRUE(path.ContainsI(LR"(d:\build\out\GRÖßE)"));
    EXPECT_TRUE(path.ContainsI(L"журн"));
    EXPECT_FALSE(path.ContainsI(LR"(d:\build\outer)"));
}

TEST(Utf8ToWChar, ReplacesEachMalformedSequenceOnce)
{
    const std::pair<std::string_view, std::wstring> rows[] = {
        {"a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", L"a\u00E4\u20AC\U0001F600"},
        {{"a\0b", 3}, {L"a\0b", 3}},
        {"a\xFFz", L"a\uFFFDz"},
        {{"a\xC3\xA4", 2}, L"a\uFFFD"},    // cut off at the end
        {"\xC0\xAFz", L"\uFFFDz"},         // overlong
        {"\xED\xA0\x80z", L"\uFFFDz"},     // a surrogate
        {"\xF4\x90\x80\x80z", L"\uFFFDz"}, // beyond U+10FFFF
    };
    WString wide;
    for (const auto& [bytes, expected] : rows)
    {
        const bool isWellFormed = expected.find(L'\uFFFD') == expected.npos;
        EXPECT_EQ(QnStringUtilities::Utf8ToWChar(wide, bytes.data(), bytes.length()),
                  isWellFormed ? QuenlorStatus::Success : QuenlorStatus::MalformedText);
        EXPECT_EQ(std::wstring(wide.c_str(), wide.length()), expected);
    }
    EXPECT_EQ(QnStringUtilities::Utf8ToWChar(wide, "ab\0c"), QuenlorStatus::Success);
    EXPECT_EQ(wide, WString{L"ab"});
    EXPECT_EQ(QnStringUtilities::Utf8ToWChar(wide, nullptr), QuenlorStatus::Success);
    EXPECT_TRUE(wide.empty());
}

TEST(Utf8ToWChar, CutsToTheBufferBetweenCharacters)
{
    wchar_t buffer[4] = {L'?', L'?', L'?', L'?'};
    EXPECT_EQ(QnStringUtilities::Utf8ToWChar(buffer, "abcdef", 4), buffer);
    EXPECT_STREQ(buffer, L"abc");
    QnStringUtilities::Utf8ToWChar(buffer, "a\xF0\x9F\x98\x80", 3);
    EXPECT_STREQ(buffer, sizeof(wchar_t) == 4 ? L"a\U0001F600" : L"a");
    QnStringUtilities::Utf8ToWChar(buffer, "xyz", 1);
    EXPECT_STREQ(buffer, L"");
    EXPECT_EQ(QnStringUtilities::Utf8ToWChar(nullptr, "a", 3), nullptr);
}

TEST(WCharToUtf8, ReplacesEachLoneSurrogate)
{
    Utf8String narrow;
    EXPECT_EQ(QnStringUtilities::WCharToUtf8(narrow, L"a\u00E4\u20AC\U0001F600"), QuenlorStatus::Success);
    EXPECT_EQ(narrow, "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");

    const auto lead = static_cast<wchar_t>(0xD83D), trail = static_cast<wchar_t>(0xDE00);
    const wchar_t lone[] = {L'a', lead, L'!', trail, lead};
    EXPECT_EQ(QnStringUtilities::WCharToUtf8(narrow, lone, 5), QuenlorStatus::MalformedText);
    EXPECT_EQ(narrow, "a\xEF\xBF\xBD!\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Split, KeepsEmptyPiecesAndAppends)
{
    std::vector<Utf8String> pieces = {"first"};
    QnStringUtilities::Split(",a;b,", ",;", nullptr, pieces);
    QnStringUtilities::Split(R"(a\,b,c\)", ",", R"(\)", pieces);
    EXPECT_THAT(pieces, ElementsAre("first", "", "a", "b", "", "a,b", R"(c\)"));
}

TEST(Wtoi, ReadsTheNumberAtTheStart)
{
    // clang-format off
    const std::pair<const wchar_t*, int> rows[] = {
        {L"", 0}, {nullptr, 0}, {L"-", 0}, {L"+-1", 0}, {L"12abc", 12}, {L" \t\n\v\f\r-7", -7}, {L"+5", 5},
        {L"2147483647", INT_MAX}, {L"-2147483648", INT_MIN}, {L"-2147483647", -INT_MAX},
        {L"99999999999999999999", INT_MAX}, {L"-99999999999999999999", INT_MIN},
        {L"\u0663", 0}, {L"1\uFF12", 1}, {L"\u20031", 0}, {L"\u00A01", 0}};
    // clang-format on
    for (const auto& [text, number] : rows)
        EXPECT_EQ(QnStringUtilities::Wtoi(text), number);
}
} // namespace
