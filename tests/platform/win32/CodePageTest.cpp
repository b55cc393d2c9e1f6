#include <Platform/Win32.h>

#include <string>

#include <gtest/gtest.h>

namespace
{
TEST(WideCharToMultiByte, NeedsAsManyBytesAsOnWindows)
{
    const struct
    {
        UINT codePage;
        std::wstring text;
        int length;
        bool isSubstituted = false;
    } rows[] = {
        {1252, L"a \u20AC\u00E9", 4},
        {1252, L"\u0081", 1},           // a control whose byte is free
        {1252, L"\u0080", 1, true},     // and one whose byte is the Euro's
        {1252, L"\u0100", 1, true},     // looks like A
        {1252, L"\U0001F600", 2, true}, // a pair on Windows
        {1252, std::wstring(1, static_cast<wchar_t>(0xD800)), 1, true},
        {1251, L"\u042F", 1},
        {932, L"\u65E5\uFF71\u042F", 5},
        {932, L"\u00A5", 1, true}, // looks like a backslash
        {CP_UTF8, L"a\u00E9\u65E5\U0001F600", 1 + 2 + 3 + 4},
        {CP_UTF8, std::wstring(1, static_cast<wchar_t>(0xDC00)), 3},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(::testing::PrintToString(row.text) + " in " + std::to_string(row.codePage));
        const bool isUtf8 = row.codePage == CP_UTF8; // which has neither flags nor a substitute
        BOOL isSubstituted = FALSE;
        EXPECT_EQ(::WideCharToMultiByte(row.codePage, isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS, row.text.c_str(), -1, nullptr,
                                        0, nullptr, isUtf8 ? nullptr : &isSubstituted),
                  row.length + 1);
        EXPECT_EQ(isSubstituted, row.isSubstituted);
    }
}

TEST(WideCharToMultiByte, FillsOnlyALargeEnoughBuffer)
{
    std::string buffer = "####";
    EXPECT_EQ(::WideCharToMultiByte(1252, 0, L"\u00E9\u65E5z", 2, buffer.data(), 2, "!", nullptr), 2);
    EXPECT_EQ(buffer, "\xE9!##") << "no NUL that was not asked for";
    EXPECT_EQ(::WideCharToMultiByte(1252, 0, L"abc", -1, buffer.data(), 3, nullptr, nullptr), 0);
}
} // namespace
