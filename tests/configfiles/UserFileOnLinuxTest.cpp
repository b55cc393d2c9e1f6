#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>

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

TEST_F(UserFileTest, IsNotMadeWhereALinkToNowhereIs)
{
    create_directories(m_folder);
    create_symlink(m_folder / "nowhere", m_path);
    EXPECT_THROW(Provide(m_file), std::runtime_error);
}
} // namespace
