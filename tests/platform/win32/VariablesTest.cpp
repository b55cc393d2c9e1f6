#include <Platform/Win32.h>

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
        for (const char* const name :
             {"PROGRAMDATA", "LOCALAPPDATA", "XDG_DATA_HOME", "HOME", "LC_ALL", "LC_MESSAGES", "LANG"})
            m_machine.SetEnvironment(name, {});
    }

    /// The user's folder, created if missing; empty when the call fails.
    static std::string Ask(int folder = CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE)
    {
        char path[MAX_PATH] = "#";
        const bool hasFailed = FAILED(::SHGetFolderPathA(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path));
        EXPECT_EQ(hasFailed, *path == '\0');
        return path;
    }

    ScratchMachine m_machine;
    const std::string m_root = m_machine.Root().string();
};

TEST_F(Variables, NameTheShellsFolders)
{
    EXPECT_EQ(Ask(), "") << "not even a home";
    m_machine.SetEnvironment("HOME", m_root + "/home");
    EXPECT_EQ(Ask(), m_root + "/home/.local/share");
    m_machine.SetEnvironment("XDG_DATA_HOME", m_root + "/xdg");
    EXPECT_EQ(Ask(CSIDL_LOCAL_APPDATA), "") << "missing, and not to be created";
    EXPECT_EQ(Ask(), m_root + "/xdg");
    m_machine.SetEnvironment("LOCALAPPDATA", ".");
    EXPECT_EQ(Ask(), "") << "it would differ from program to program";

    const std::string parents = m_root + "/long/" + std::string(100, 'x') + '/';
    const std::string longest = parents + std::string(MAX_PATH - 1 - parents.length(), 'y');
    m_machine.SetEnvironment("LOCALAPPDATA", longest + 'y');
    EXPECT_EQ(Ask(), "");
    m_machine.SetEnvironment("LOCALAPPDATA", longest);
    EXPECT_EQ(Ask(), longest);

    EXPECT_EQ(Ask(CSIDL_COMMON_APPDATA), "/usr/share");
    m_machine.SetEnvironment("PROGRAMDATA", m_root);
    EXPECT_EQ(Ask(CSIDL_COMMON_APPDATA), m_root);
}

TEST_F(Variables, NameTheLanguageAndItsCharset)
{
    const struct
    {
        const char* variable; // set in addition to those above
        const char* value;
        LANGID language;
        int charset;
    } rows[] = {
        {"LANG", "jam_JM", 0x0409, 0}, // three letters, not Japanese
        {"LANG", "ja_JP.UTF-8", 0x0411, 128}, {"LC_MESSAGES", "sr_RS@latin", 0x081A, 238},
        {"LC_ALL", "C.UTF-8", 0x0409, 0},     {"LC_ALL", "", 0x081A, 238}, // as if it were missing
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
    constexpr char cyrillic[] = "\xD0\xAF";
    const struct
    {
        const char* codePage;
        bool hasUnicodeChars;
        int isSupported; // as many bytes as in UTF-8
    } rows[] = {
        {"1251", false, 0}, {"932", false, 1}, {"65001", false, 1}, {"99999", true, 0}, {"1251//TRANSLIT", true, 0}};
    for (const auto& [codePage, hasUnicodeChars, isSupported] : rows)
    {
        m_machine.SetEnvironment("QUENLOR_ANSI_CODE_PAGE", codePage);
        EXPECT_EQ(DirectoryConfig::HasUnicodeChars(cyrillic) != 0, hasUnicodeChars) << codePage;
        EXPECT_EQ(DirectoryConfig::IsFileNameSupportedInCurrentCulture(cyrillic), isSupported) << codePage;
    }
}
} // namespace
