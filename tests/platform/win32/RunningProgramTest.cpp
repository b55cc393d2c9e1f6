#include <Platform/Win32.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <elf.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include <Quenlor/QnFileName.h>
#include <gtest/gtest.h>

#include "UserSettingsConfig.h"
#include "VersionConfig.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/Printers.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor;
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;

class Process final
{
public:
    Process(const fs::path& program, const char* name, const char* argument)
    {
        char* const arguments[] = {const_cast<char*>(name), const_cast<char*>(argument), nullptr};
        EXPECT_EQ(::posix_spawn(&m_id, program.c_str(), nullptr, nullptr, arguments, environ), 0) << program;
    }
    ~Process()
    {
        if (m_id == 0)
            return;
        ::kill(m_id, SIGKILL);
        Wait();
    }

    int Wait()
    {
        int status = 0;
        ::waitpid(std::exchange(m_id, 0), &status, 0);
        return status;
    }

private:
    pid_t m_id = 0;
};

TEST(RunningPrograms, OfOtherUsersAreFound)
{
    const ScratchMachine machine;
    const fs::path longName = machine.Root() / "a program with a long name";
    const fs::path shortName = machine.Root() / "without line";
    for (const fs::path& program : {longName, shortName})
        copy_file("/bin/sleep", program);
    const Process withCommandLine{longName, longName.c_str(), "60"};
    const Process withoutCommandLine{shortName, "", "60"};
    const OrdinaryUser user{machine.Root()};
    EXPECT_TRUE(UserSettingsConfig::IsExeRunning("a program with a long name"));
    EXPECT_TRUE(UserSettingsConfig::IsExeRunning("without line"));
    EXPECT_FALSE(UserSettingsConfig::IsExeRunning("a program"));
}

/// In a copy of this program, whose version is 22.9.0.115.
void CheckAfterReplacement(const fs::path& program)
{
    fs::remove(program);
    WriteFile(program, "the next release");
    EXPECT_EQ(VersionConfig::GetProductVersion(), "22.09.00.115");
    QnFileName name;
    EXPECT_EQ(QnGetModuleFileName(name, nullptr), QuenlorStatus::Success);
    QnFileName expected;
    expected.SetNameUtf8(program.c_str());
    EXPECT_STREQ(name.GetName(), expected.GetName());
}

TEST(RunningProgram, KeepsItsVersionAndNameWhenReplaced)
{
    constexpr char copyVariable[] = "TEST_RUNS_IN_A_COPY";
    if (std::getenv(copyVariable))
        return CheckAfterReplacement(fs::read_symlink("/proc/self/exe"));
    ScratchMachine machine;
    machine.SetEnvironment(copyVariable, "1");
    for (const char* const name : {"Editor", "Edi\\tor", "Edi\xFFtor"})
    {
        const fs::path program = machine.Root() / name;
        copy_file("/proc/self/exe", program);
        Process copy{program, program.c_str(), "--gtest_filter=*WhenReplaced"};
        EXPECT_EQ(copy.Wait(), 0) << program;
    }
}

/// An executable with this many segments of notes, all but the last being the same megabyte.
std::string ExecutableWithNotes(Elf64_Half count)
{
    constexpr std::size_t megabyte = 1 << 20;
    Elf64_Ehdr header{};
    std::copy_n(ELFMAG, SELFMAG, header.e_ident);
    header.e_ident[EI_CLASS] = ELFCLASS64;
    header.e_phentsize = sizeof(Elf64_Phdr);
    header.e_phoff = sizeof header;
    header.e_phnum = count;
    struct
    {
        Elf64_Nhdr note{.n_namesz = 8, .n_descsz = sizeof(VS_FIXEDFILEINFO), .n_type = 1};
        char owner[8] = "Quenlor";
        VS_FIXEDFILEINFO info{};
    } version;
    version.info.dwSignature = 0xFEEF04BD;
    Elf64_Phdr segment{};
    segment.p_type = PT_NOTE;
    segment.p_filesz = megabyte;
    segment.p_offset = sizeof header + count * sizeof segment;

    const auto bytes = [](const auto& value) {
        return std::string{reinterpret_cast<const char*>(&value), sizeof value};
    };
    std::string file = bytes(header);
    for (Elf64_Half i = 1; i < count; ++i)
        file += bytes(segment);
    segment.p_offset += megabyte;
    segment.p_filesz = sizeof version;
    return file + bytes(segment) + std::string(megabyte, '\0') + bytes(version);
}

TEST(VersionResource, IsLookedForInOneMegabyteOfNotes)
{
    const ScratchMachine machine;
    const fs::path program = machine.Root() / "program";
    WriteFile(program, ExecutableWithNotes(1));
    EXPECT_NE(::GetFileVersionInfoSizeA(program.c_str(), nullptr), 0U);
    WriteFile(program, ExecutableWithNotes(3));
    EXPECT_EQ(::GetFileVersionInfoSizeA(program.c_str(), nullptr), 0U);
}
} // namespace
