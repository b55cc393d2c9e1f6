#include "configfiles/UserFile.h"

#include <filesystem>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/Printers.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using ::testing::ThrowsMessage;

/// The user's file and its default, of another name: neither is there yet, nor are their folders.
class UserFileTest : public ::testing::Test
{
protected:
    ScratchMachine m_machine;
    UserFile m_file{m_machine.Folder("files") + R"(user\deep\User.ini)",
                    m_machine.Folder("files") + R"(installed\Default.ini)"};
    const std::filesystem::path m_user = m_machine.Root() / "files" / "user" / "deep" / "User.ini";
    const std::filesystem::path m_default = m_machine.Root() / "files" / "installed" / "Default.ini";
};

TEST_F(UserFileTest, IsCopiedOnce)
{
    const std::string content = std::string(100000, 'x') + std::string("\r\n\0\xFF", 4);
    WriteFile(m_default, content);
    EXPECT_EQ(Provide(m_file), m_file.path);
    EXPECT_TRUE(ReadFile(m_user) == content);
    WriteFile(m_user, "edited");
    std::filesystem::remove(m_default);
    EXPECT_EQ(Provide(m_file), m_file.path) << "the default is not looked at";
    EXPECT_EQ(ReadFile(m_user), "edited");
}

TEST_F(UserFileTest, IsMadeInAFolderOfAnotherLetterCase)
{
    const std::filesystem::path folder = m_user.parent_path().parent_path() / "DEEP";
    std::filesystem::create_directories(folder);
    WriteFile(m_default, "default");
    EXPECT_EQ(Provide(m_file), m_file.path) << "the path is not respelled";
    EXPECT_EQ(ReadFile(folder / "User.ini"), "default");

    m_file.path = m_machine.Folder("files") + "\xFF.ini";
    EXPECT_EQ(Provide(m_file), m_machine.Folder("files") + "\xEF\xBF\xBD.ini");
}

// BadFilesTest has the other messages.
TEST_F(UserFileTest, NamesTheDefaultOfAPlugInAndAFolderThatCannotBeMade)
{
    m_file.origin = UserFile::Origin::PlugIn;
    const auto provide = [this] { Provide(m_file); };
    EXPECT_THAT(provide, ThrowsMessage<std::runtime_error>("Default.ini file not found."));
    EXPECT_FALSE(exists(m_user.parent_path()));
    WriteFile(m_default, "default");
    WriteFile(m_user.parent_path(), "a file in the place of a folder");
    EXPECT_THAT(provide, ThrowsMessage<std::runtime_error>("Default.ini file target directory could not be created."));
}
} // namespace
