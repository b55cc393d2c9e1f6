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

    /// By default the user's, to be made. None when the call fails.
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

TEST_F(ShellFoldersTest, TheUsersIsNamedByTheFirstVariableThatHasAValueTheMachinesNeedsNone)
{
    EXPECT_EQ(Ask(), std::nullopt) << "not even a home";
    m_machine.SetEnvironment("HOME", m_root + "/home");
    EXPECT_EQ(Ask(), m_root + "/home/.local/share");
    m_machine.SetEnvironment("XDG_DATA_HOME", m_root + "/xdg");
    EXPECT_EQ(Ask(CSIDL_LOCAL_APPDATA), std::nullopt) << "not there and not to be made";
    EXPECT_EQ(Ask(), m_root + "/xdg");
    m_machine.SetEnvironment("LOCALAPPDATA", "");
    EXPECT_EQ(Ask(), m_root + "/xdg");
    m_machine.SetEnvironment("LOCALAPPDATA", ".");
    EXPECT_EQ(Ask(), std::nullopt) << "it would be another one for every program";

    EXPECT_EQ(Ask(CSIDL_COMMON_APPDATA), "/usr/share");
    m_machine.SetEnvironment("PROGRAMDATA", m_root);
    EXPECT_EQ(Ask(CSIDL_COMMON_APPDATA), m_root);
}

TEST_F(ShellFoldersTest, OneThatDoesNotFitTheBufferIsRefusedAndNotMade)
{
    const std::string parents = m_root + "/long/" + std::string(100, 'x');
    const std::string longest = parents + '/' + std::string(MAX_PATH - 2 - parents.length(), 'y');
    m_machine.SetEnvironment("LOCALAPPDATA", longest + 'y');
    EXPECT_EQ(Ask(), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(m_root + "/long"));
    m_machine.SetEnvironment("LOCALAPPDATA", longest);
    EXPECT_EQ(Ask(), longest);
}
} // namespace
