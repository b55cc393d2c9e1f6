#include <fcntl.h>
#include <filesystem>
#include <sstream>
#include <string>
#include <sys/prctl.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "reliability/Processes.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// A set-user-ID program is started by somebody who must not choose what it reads with its greater rights.

namespace
{
namespace fs = std::filesystem;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;

constexpr unsigned Nobody = 65534;

class SetUserIdTest : public ::testing::Test
{
protected:
    SetUserIdTest()
    {
        fs::permissions(m_machine.Root(), fs::perms{0755});
        fs::create_directory(m_folder);
        fs::copy_file(SET_USER_ID_PROGRAM, m_program);
    }

    /// What the program prints when nobody in particular starts it, with every variable set to the test's folder.
    std::vector<std::string> Run(fs::perms mode) const
    {
        fs::permissions(m_program, mode);
        const fs::path output = m_machine.Root() / "output";
        const pid_t child = Start(
            [&]
            {
            const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            for (const char* const name : {"QUENLOR_REGISTRY_DIR", "HOME", "PROGRAMDATA", "LOCALAPPDATA",
                                           "FRAXO_PRO_ROOT_DIRECTORY", "FRAXO_PRO_SECTIONS_DIRECTORY"})
                ::setenv(name, m_folder.c_str(), 1);
            ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1); // which does not work with greater rights
            if (::dup2(file, STDOUT_FILENO) < 0 || ::setgid(Nobody) != 0 || ::setuid(Nobody) != 0)
                return 1;
            ::execl(m_program.c_str(), m_program.c_str(), nullptr);
            return 2;
        });
        EXPECT_EQ(ExitCode(child), 0);
        std::istringstream text{ReadFile(output)};
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }

    const ScratchMachine m_machine;
    const fs::path m_folder = m_machine.Root() / "elsewhere";
    const fs::path m_program = m_folder / "program";
};

TEST_F(SetUserIdTest, VariablesMoveHivesAndFoldersInOtherProgramsAlone)
{
    struct statvfs volume
    {
    };
    ASSERT_EQ(::statvfs(m_folder.c_str(), &volume), 0);
    if (::geteuid() != 0 || (volume.f_flag & ST_NOSUID) || ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1)
        GTEST_SKIP() << "Only root can try this, and only where programs can get rights.";
    EXPECT_THAT(Run(fs::perms{0755}), AllOf(SizeIs(6), Each(HasSubstr("elsewhere"))));
    EXPECT_THAT(Run(fs::perms{04755}), AllOf(SizeIs(6), Each(Not(HasSubstr("elsewhere")))));
}
} // namespace
