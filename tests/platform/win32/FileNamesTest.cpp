#include <Platform/Win32.h>

#include <string>

#include <gtest/gtest.h>

#include "DirectoryConfig.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::DirectoryConfig;

TEST(AnsiCodePage, IsTheVariablesOrWesternEuropean)
{
    constexpr char cyrillic[] = "\xD0\xAF";
    constexpr char kanji[] = "\xE6\x97\xA5";
    struct
    {
        const char* codePage;
        const char* name;
        bool hasUnicodeChars;
        int isSupported;
    } const rows[] = {
        {"932", cyrillic, false, 1},           {"1251", kanji, true, 0},
        {"1251", cyrillic, false, 0},          {"65001", kanji, false, 1},
        {"99999", "\xC3\xA9", false, 0},       {"99999", kanji, true, 0},
        {"1251//TRANSLIT", cyrillic, true, 0},
    };
    ScratchMachine machine;
    for (const auto& row : rows)
    {
        machine.SetEnvironment("QUENLOR_ANSI_CODE_PAGE", row.codePage);
        EXPECT_EQ(DirectoryConfig::HasUnicodeChars(row.name) != 0, row.hasUnicodeChars) << row.codePage;
        EXPECT_EQ(DirectoryConfig::IsFileNameSupportedInCurrentCulture(row.name), row.isSupported) << row.codePage;
    }
}

TEST(GetLongPathNameW, HasTheDisksLetterCaseAndTheCallersSeparators)
{
    const ScratchMachine machine;
    WriteFile(machine.Root() / "Pl\u00FCgIns" / "Plugins.ini", "");
    const std::wstring root = machine.Root().wstring();
    const std::wstring asked = root + L"\\PL\u00DCGINS/plugins.INI";

    std::wstring buffer(asked.length(), L'#');
    const auto length = static_cast<DWORD>(asked.length());
    EXPECT_EQ(::GetLongPathNameW(asked.c_str(), buffer.data(), length), length + 1);
    EXPECT_EQ(buffer, std::wstring(length, L'#'));
    EXPECT_EQ(::GetLongPathNameW(asked.c_str(), buffer.data(), length + 1), length);
    EXPECT_EQ(buffer, root + L"\\Pl\u00FCgIns/Plugins.ini");
    EXPECT_EQ(::GetShortPathNameW(buffer.c_str(), nullptr, 0), length + 1);
    EXPECT_EQ(::GetLongPathNameW((L"C:" + buffer).c_str(), buffer.data(), length), 0U);
}
} // namespace
