#include "configfiles/UserFile.h"

#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>

#include <Platform/Win32.h>
#include <gmock/gmock.h>

#include "IniReader.h"
#include "posix/NextVersion.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;
using ::testing::ThrowsMessage;

class UserFileOnLinux : public ::testing::Test
{
protected:
    UserFileOnLinux()
    {
        create_directories(m_path.parent_path());
        WriteFile(m_default, "[Main]\n");
    }

    void MakeFrom(const fs::path& origin) const { Provide({m_path.string(), origin.string()}); }

    const ScratchMachine m_machine;
    const fs::path m_default = m_machine.Root() / "default.ini";
    const fs::path m_path = m_machine.Root() / "user" / "user.ini";
};

TEST_F(UserFileOnLinux, IsReadableOnlyByItsOwner)
{
    ::umask(0);
    MakeFrom(m_default);
    EXPECT_EQ(status(m_path).permissions(), fs::perms{0600});

    permissions(m_path.parent_path(), fs::perms::none);
    const OrdinaryUser user{m_machine.Root()};
    EXPECT_FALSE(IniReader{}.LoadFile(m_path.string()));
    EXPECT_THAT([this] { MakeFrom(m_default); },
                ThrowsMessage<std::runtime_error>("default.ini file could not be copied."));
}

TEST_F(UserFileOnLinux, IsKeptWhenItAppearsDuringTheCopy)
{
    const Quenlor::Posix::FileDescriptor folder{::open(m_path.parent_path().c_str(), O_RDONLY | O_DIRECTORY)};
    Quenlor::Posix::NextVersion unnamed{folder};
    Quenlor::Posix::NextVersion named{folder, "next", 0600};
    WriteFile(m_path, "the user's");
    EXPECT_FALSE(unnamed.TakeFree("user.ini"));
    EXPECT_FALSE(named.TakeFree("user.ini"));
    EXPECT_EQ(ReadFile(m_path), "the user's");
}

/// A reader of a pipe or a device would wait for ever, or get bytes without an end.
TEST_F(UserFileOnLinux, IsNotReadFromPipesDevicesAndBeyondTheLimit)
{
    const fs::path pipe = m_machine.Root() / "pipe", huge = m_machine.Root() / "huge";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    WriteFile(huge, "[Main]\nKey=v\n");
    fs::resize_file(huge, std::uintmax_t{1} << 40); // which takes no room on the disk
    for (const fs::path& path : {huge, pipe, fs::path{"/dev/zero"}})
    {
        char value[8];
        ::GetPrivateProfileStringA("Main", "Key", "none", value, sizeof value, path.c_str());
        EXPECT_STREQ(value, "none");
        IniReader reader;
        EXPECT_TRUE(reader.LoadFile(path.string())) << "it exists";
        EXPECT_EQ(reader.GetStringValue("Main", "Key", "none"), "none");
        if (path == huge) // which could be copied
            continue;
        EXPECT_THAT([&] { MakeFrom(path); },
                    ThrowsMessage<std::runtime_error>(path.filename().string() + " file could not be copied."));
    }
}
} // namespace
