#include <Quenlor/QnStringUtilities.h>
#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>

#include <gmock/gmock.h>

#include <climits>
#include <cstdarg>
#include <string>
#include <utility>
#include <vector>

namespace
{
using Quenlor::QnStringUtilities;
using Quenlor::Utf8String;
using Quenlor::WString;
using enum Quenlor::QuenlorStatus;

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
    compare(Utf8String{"b"});
    EXPECT_EQ(Utf8String{static_cast<const char*>(nullptr)}, static_cast<const char*>(nullptr));
}

TEST(Utf8String, ReplacesAllWithoutRescanningWhatItInserted)
{
    Utf8String text = "aXbXX";
    EXPECT_EQ(text.ReplaceAll("X", "XX"), 3U);
    EXPECT_EQ(text, "aXXbXXXX");
    EXPECT_EQ(text.ReplaceAll("XX", nullptr), 3U);
    EXPECT_EQ(text, "ab");
    EXPECT_EQ(text.ReplaceAll("", "y"), 0U);
}

TEST(Utf8String, IsFormattedFromPartsOfItself)
{
    const auto format = [](Utf8String& text, const char* pattern, ...)
    {
        std::va_list arguments;
        va_start(arguments, pattern);
        text.VSprintf(pattern, arguments);
        va_end(arguments);
    };
    Utf8String text = "22";
    format(text, "%02d.%s", 7, text.c_str());
    EXPECT_EQ(text, "07.22");
}

TEST(WString, ContainsTextInAnyLetterCase)
{
    const WString path = LR"(D:\Build\OUT\Größe\ЖУРНАЛ.exe)";
    EXPECT_TRUE(path.ContainsI(LR"(d:\build\out\GRÖßE\журн)"));
    EXPECT_FALSE(path.ContainsI(LR"(d:\build\outer)"));
}

// TextConversionFuzz shows the same of any text, where wchar_t has 32 bits.
TEST(QnStringUtilities, ConvertsTextAndReplacesWhatIsMalformed)
{
    WString wide;
    Utf8String narrow;
    EXPECT_EQ(QnStringUtilities::Utf8ToWChar(wide, "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), Success);
    EXPECT_EQ(wide, WString{L"\u00E4\u20AC\U0001F600"});
    EXPECT_EQ(QnStringUtilities::WCharToUtf8(narrow, wide.c_str()), Success);
    EXPECT_EQ(narrow, "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(QnStringUtilities::Utf8ToWChar(wide, "a\xFFz\xED\xA0\x80z\xC3"), MalformedText);
    EXPECT_EQ(wide, WString{L"a\uFFFDz\uFFFDz\uFFFD"});
    const wchar_t lone[] = {0xD83D, L'!', 0xDE00, 0xD83D};
    EXPECT_EQ(QnStringUtilities::WCharToUtf8(narrow, lone, 4), MalformedText);
    EXPECT_EQ(narrow, "\xEF\xBF\xBD!\xEF\xBF\xBD\xEF\xBF\xBD");

    wchar_t buffer[4] = {L'?', L'?', L'?', L'?'};
    EXPECT_EQ(QnStringUtilities::Utf8ToWChar(buffer, "abcdef", 4), buffer);
    EXPECT_STREQ(buffer, L"abc");
    QnStringUtilities::Utf8ToWChar(buffer, "a\xF0\x9F\x98\x80", 3);
    EXPECT_STREQ(buffer, sizeof(wchar_t) == 4 ? L"a\U0001F600" : L"a") << "cuts between characters";
}

TEST(QnStringUtilities, SplitKeepsEmptyPiecesAndAppends)
{
    std::vector<Utf8String> pieces = {"first"};
    QnStringUtilities::Split(",a;b,", ",;", nullptr, pieces);
    QnStringUtilities::Split(R"(a\,b,c\)", ",", R"(\)", pieces);
    EXPECT_THAT(pieces, ::testing::ElementsAre("first", "", "a", "b", "", "a,b", R"(c\)"));
}

TEST(QnStringUtilities, WtoiReadsTheNumberAtTheStart)
{
    const std::pair<const wchar_t*, int> rows[] = {
        {nullptr, 0},    {L"+-1", 0},     {L" \t\n-7abc", -7},      {L"+5", 5},
        {L"1\uFF12", 1}, {L"\u20031", 0}, {L"9999999999", INT_MAX}, {L"-99999999999999999999", INT_MIN},
    };
    for (const auto& [text, number] : rows)
        EXPECT_EQ(QnStringUtilities::Wtoi(text), number);
}
} // namespace
