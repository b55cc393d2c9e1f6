#include <Platform/Win32.h>

#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "support/ScratchMachine.h"

// Which variables name the shell's folders here, and which values are refused.

namespace
{
class ShellFoldersTest : public ::testing::Test
{
protected:
    ShellFoldersTest()
    {
        for (const char* const variable : {"PROGRAMDATA", "LOCALAPPDATA", "XDG_DATA_HOME", "HOME"})
            m_machine.SetEnvironment(variable, {});
    }

    /// The answer; none when the call fails.
    static std::optional<std::string> Ask(int folder)
    {
        char path[MAX_PATH] = "#";
        if (!FAILED(::SHGetFolderPathA(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path)))
            return path;
        EXPECT_STREQ(path, "");
        return {};
    }

    static std::optional<std::string> AskForUserData() { return Ask(CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE); }

    ScratchMachine m_machine;
    const std::string m_root = m_machine.Root().string();
};

TEST_F(ShellFoldersTest, TheUsersIsNamedByTheFirstVariableThatHasAValue)
{
    EXPECT_EQ(AskForUserData(), std::nullopt) << "not even a home";
    m_machine.SetEnvironment("HOME", m_root + "/home");
    EXPECT_EQ(AskForUserData(), m_root + "/home/.local/share");
    EXPECT_TRUE(std::filesystem::is_directory(m_root + "/home/.local/share"));
    m_machine.SetEnvironment("XDG_DATA_HOME", m_root + "/xdg");
    EXPECT_EQ(Ask(CSIDL_LOCAL_APPDATA), std::nullopt) << "not there and not to be made";
    EXPECT_EQ(AskForUserData(), m_root + "/xdg");
    m_machine.SetEnvironment("LOCALAPPDATA", "");
    EXPECT_EQ(AskForUserData(), m_root + "/xdg");
    for (const char* const relative : {".", "~", R"(C:\)"})
    {
        m_machine.SetEnvironment("LOCALAPPDATA", relative);
        EXPECT_EQ(AskForUserData(), std::nullopt) << "it would be another one for every program";
    }
}

TEST_F(ShellFoldersTest, TheMachinesNeedsNoVariable)
{
    EXPECT_EQ(Ask(CSIDL_COMMON_APPDATA), "/usr/share");
    m_machine.SetEnvironment("PROGRAMDATA", m_root);
    EXPECT_EQ(Ask(CSIDL_COMMON_APPDATA), m_root);
}

TEST_F(ShellFoldersTest, OneThatDoesNotFitTheBufferIsRefusedAndNotMade)
{
    const std::string parents = m_root + "/long/" + std::string(100, 'x');
    const std::string longest = parents + '/' + std::string(MAX_PATH - 2 - parents.length(), 'y');
    m_machine.SetEnvironment("LOCALAPPDATA", longest + 'y');
    EXPECT_EQ(AskForUserData(), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(m_root + "/long"));
    m_machine.SetEnvironment("LOCALAPPDATA", longest);
    EXPECT_EQ(AskForUserData(), longest);
}
} // namespace
