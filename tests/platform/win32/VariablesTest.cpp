#include <Platform/Win32.h>

#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "DirectoryConfig.h"
#include "LanguageHelper.h"
#include "support/ScratchMachine.h"

// What the variables of the environment decide here.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;

class Variables : public ::testing::Test
{
protected:
    Variables()
    {
        for (const char* const name : {"PROGRAMDATA", "LOCALAPPDATA", "XDG_DATA_HOME", "HOME", "LC_ALL", "LC_MESSAGES",
                                       "LANG", "FRAXO_PRO_LANGUAGE"})
            m_machine.SetEnvironment(name, {});
    }

    /// By default the user's, created if missing. None when the call fails.
    static std::optional<std::string> Ask(int folder = CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE)
    {
        char path[MAX_PATH] = "#";
        if (!FAILED(::SHGetFolderPathA(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path)))
            return path;
        EXPECT_STREQ(path, "");
        return {};
    }

    ScratchMachine m_machine;
    const std::string m_root = m_machine.Root().string();
};

TEST_F(Variables, NameTheShellsFolders)
{
    EXPECT_EQ(Ask(), std::nullopt) << "not even a home";
    m_machine.SetEnvironment("HOME", m_root + "/home");
    EXPECT_EQ(Ask(), m_root + "/home/.local/share");
    m_machine.SetEnvironment("XDG_DATA_HOME", m_root + "/xdg");
    EXPECT_EQ(Ask(CSIDL_LOCAL_APPDATA), std::nullopt) << "missing, and not to be created";
    EXPECT_EQ(Ask(), m_root + "/xdg");
    m_machine.SetEnvironment("LOCALAPPDATA", "");
    EXPECT_EQ(Ask(), m_root + "/xdg");
    m_machine.SetEnvironment("LOCALAPPDATA", ".");
    EXPECT_EQ(Ask(), std::nullopt) << "it would differ from program to program";

    const std::string parents = m_root + "/long/" + std::string(100, 'x');
    const std::string longest = parents + '/' + std::string(MAX_PATH - 2 - parents.length(), 'y');
    m_machine.SetEnvironment("LOCALAPPDATA", longest + 'y');
    EXPECT_EQ(Ask(), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(m_root + "/long"));
    m_machine.SetEnvironment("LOCALAPPDATA", longest);
    EXPECT_EQ(Ask(), longest);

    EXPECT_EQ(Ask(CSIDL_COMMON_APPDATA), "/usr/share");
    m_machine.SetEnvironment("PROGRAMDATA", m_root);
    EXPECT_EQ(Ask(CSIDL_COMMON_APPDATA), m_root);
}

TEST_F(Variables, NameTheLanguageAndItsCharset)
{
    m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "ja"); // not considered here
    const struct
    {
        const char* variable; // set in addition to those above
        const char* value;
        LANGID language;
        int charset;
    } rows[] = {
        {"LANG", "", 0x0409, 0},
        {"LANG", "jam_JM", 0x0409, 0}, // three letters, not Japanese
        {"LANG", "ja_JP.UTF-8", 0x0411, 128},
        {"LANG", "zh_CN.GB18030", 0x0804, 134},
        {"LANG", "ru", 0x0419, 204},
        {"LC_MESSAGES", "sr_RS@latin", 0x081A, 238},
        {"LC_ALL", "tr_TR.UTF-8", 0x041F, 162},
        {"LC_ALL", "C.UTF-8", 0x0409, 0},
        {"LC_ALL", "", 0x081A, 238}, // as if it were missing
    };
    for (const auto& [variable, value, language, charset] : rows)
    {
        m_machine.SetEnvironment(variable, value);
        EXPECT_EQ(::GetUserDefaultUILanguage(), language) << value;
        EXPECT_EQ(LanguageHelper::GetInterfaceCharset(), charset) << value;
    }
}

TEST_F(Variables, NameTheAnsiCodePage)
{
    constexpr char cyrillic[] = "\xD0\xAF", kanji[] = "\xE6\x97\xA5";
    const struct
    {
        const char* codePage;
        const char* name;
        bool hasUnicodeChars;
        int isSupported;
    } rows[] = {
        {"932", cyrillic, false, 1},           {"1251", kanji, true, 0},
        {"1251", cyrillic, false, 0},          {"65001", kanji, false, 1},
        {"99999", "\xC3\xA9", false, 0},       {"99999", kanji, true, 0},
        {"1251//TRANSLIT", cyrillic, true, 0},
    };
    for (const auto& row : rows)
    {
        m_machine.SetEnvironment("QUENLOR_ANSI_CODE_PAGE", row.codePage);
        EXPECT_EQ(DirectoryConfig::HasUnicodeChars(row.name) != 0, row.hasUnicodeChars) << row.codePage;
        EXPECT_EQ(DirectoryConfig::IsFileNameSupportedInCurrentCulture(row.name), row.isSupported) << row.codePage;
    }
}
} // namespace
