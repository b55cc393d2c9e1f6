#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>

#include <Platform/Win32.h>
#include <gmock/gmock.h>

#include "IniReader.h"
#include "configfiles/UserFile.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

class UserFileTest : public ::testing::Test
{
protected:
    UserFileTest() { WriteFile(m_machine.Root() / "default.ini", "[Main]\n"); }

    const ScratchMachine m_machine;
    const fs::path m_folder = m_machine.Root() / "user";
    const fs::path m_path = m_folder / "user.ini";
    const UserFile m_file{m_path.string(), (m_machine.Root() / "default.ini").string()};
};

TEST_F(UserFileTest, IsReadableByItsOwnerAloneWhateverItsDefaultAndTheUmaskAre)
{
    const mode_t former = ::umask(0);
    Provide(m_file);
    ::umask(former);
    EXPECT_EQ(status(m_path).permissions(), fs::perms{0600});
}

TEST_F(UserFileTest, IsNeitherReadNorMadeInAFolderThatIsClosedToThisUser)
{
    WriteFile(m_path, "[Main]\nKey=v\n");
    permissions(m_folder, fs::perms::none);
    const OrdinaryUser user{m_machine.Root()};
    IniReader reader;
    EXPECT_FALSE(reader.LoadFile(m_path.string()));
    EXPECT_THAT([this] { Provide(m_file); },
                ThrowsMessage<std::runtime_error>(StrEq("default.ini file could not be copied.")));
}

/// Whoever reads a pipe or a device waits for ever, or gets bytes without an end.
TEST_F(UserFileTest, PipesAndDevicesAreNeverRead)
{
    create_directories(m_folder);
    ASSERT_EQ(::mkfifo(m_path.c_str(), 0600), 0);
    for (const fs::path& path : {m_path, fs::path{"/dev/zero"}})
    {
        IniReader reader;
        EXPECT_TRUE(reader.LoadFile(path.string())) << "it exists";
        EXPECT_STREQ(reader.GetStringValue("Main", "Key", "none").c_str(), "none");
        char value[8];
        ::GetPrivateProfileStringA("Main", "Key", "none", value, sizeof value, path.c_str());
        EXPECT_STREQ(value, "none");
        EXPECT_EQ(::GetFileVersionInfoSizeA(path.c_str(), nullptr), 0U);
        const UserFile copy{(m_folder / "copy").string(), path.string()};
        EXPECT_THAT([&] { Provide(copy); },
                    ThrowsMessage<std::runtime_error>(path.filename().string() + " file could not be copied."));
    }
}

TEST_F(UserFileTest, FilesBeyondTheLimitAreNotRead)
{
    WriteFile(m_path, "[Main]\nKey=v\n");
    fs::resize_file(m_path, std::uintmax_t{1} << 40); // which takes no room on the disk
    char value[8];
    ::GetPrivateProfileStringA("Main", "Key", "none", value, sizeof value, m_path.c_str());
    EXPECT_STREQ(value, "none");
}

TEST_F(UserFileTest, IsNotMadeWhereALinkToNowhereIs)
{
    create_directories(m_folder);
    create_symlink(m_folder / "nowhere", m_path);
    EXPECT_THROW(Provide(m_file), std::runtime_error);
}
} // namespace
