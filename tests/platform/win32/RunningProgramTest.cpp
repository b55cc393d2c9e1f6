#include <Platform/Win32.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <elf.h>
#include <filesystem>
#include <string>
#include <sys/prctl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <Quenlor/QnFileName.h>
#include <gtest/gtest.h>

#include "DirectoryConfig.h"
#include "UserSettingsConfig.h"
#include "VersionConfig.h"
#include "registry/Hives.h"
#include "reliability/Processes.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/Printers.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor;
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;

pid_t Launch(const fs::path& program, const char* name, const char* argument)
{
    return Start([&] { return ::execl(program.c_str(), name, argument, nullptr); });
}

TEST(RunningPrograms, OfOtherUsersAreFound)
{
    const ScratchMachine machine;
    const fs::path longName = machine.Root() / "a program with a long name";
    const fs::path shortName = machine.Root() / "without line";
    for (const fs::path& program : {longName, shortName})
        copy_file("/bin/sleep", program);
    const pid_t children[] = {Launch(longName, longName.c_str(), "60"), Launch(shortName, "", "60")};
    const auto isRunning = [](const char* name) { return UserSettingsConfig::IsExeRunning(name); };
    {
        const OrdinaryUser user{machine.Root()};
        for (int i = 0; i < 10'000 && !(isRunning("a program with a long name") && isRunning("without line")); ++i)
            ::usleep(1000); // until both have started
        EXPECT_TRUE(isRunning("a program with a long name"));
        EXPECT_TRUE(isRunning("without line"));
        EXPECT_FALSE(isRunning("a program"));
    }
    for (const pid_t child : children)
    {
        ::kill(child, SIGKILL);
        ExitCode(child);
    }
}

constexpr char CopyVariable[] = "TEST_RUNS_IN_A_COPY";

/// In a copy of this program, whose version is 7.9.0.115.
void CheckAfterReplacement(const fs::path& program)
{
    fs::remove(program);
    WriteFile(program, "the next release");
    EXPECT_EQ(VersionConfig::GetProductVersion(), "07.09.00.115");
    QnFileName name;
    EXPECT_EQ(QnGetModuleFileName(name, nullptr), QuenlorStatus::Success);
    EXPECT_EQ(name.GetNameUtf8(), QnFileName{Utf8String{program.c_str()}}.GetNameUtf8());
}

TEST(RunningProgram, KeepsItsVersionAndNameWhenReplaced)
{
    if (std::getenv(CopyVariable))
        return CheckAfterReplacement(fs::read_symlink("/proc/self/exe"));
    ScratchMachine machine;
    machine.SetEnvironment(CopyVariable, "1");
    for (const char* const name : {"Editor", "Edi\\tor", "Edi\xFFtor"})
    {
        const fs::path program = machine.Root() / name;
        copy_file("/proc/self/exe", program);
        EXPECT_EQ(ExitCode(Launch(program, program.c_str(), "--gtest_filter=*WhenReplaced")), 0) << program;
    }
}

/// In a copy of this program in a folder that all variables name.
void CheckPlaces(bool areMoved)
{
    using Quenlor::StandIn::Registry::HivePath;
    char machineData[MAX_PATH] = "";
    char userData[MAX_PATH] = "";
    ::SHGetFolderPathA(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, machineData);
    ::SHGetFolderPathA(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, userData);
    for (const Utf8String& place :
         {Utf8String{HivePath(HKEY_CURRENT_USER).c_str()}, Utf8String{HivePath(HKEY_LOCAL_MACHINE).c_str()},
          Utf8String{machineData}, Utf8String{userData}, DirectoryConfig::GetFRAXOProRoot(),
          DirectoryConfig::GetFraxoSectionDatabaseDirectory()})
        EXPECT_EQ(place.ToStdString().find("elsewhere") != std::string::npos, areMoved) << place;
}

// A set-user-ID program is started by somebody who must not choose what it reads with its greater rights.
TEST(RunningProgram, WithGreaterRightsIgnoresVariables)
{
    if (const char* const areMoved = std::getenv(CopyVariable))
        return CheckPlaces(*areMoved == '1');
    ScratchMachine machine;
    struct statvfs volume
    {
    };
    ASSERT_EQ(::statvfs(machine.Root().c_str(), &volume), 0);
    if (::geteuid() != 0 || (volume.f_flag & ST_NOSUID) || ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1)
        GTEST_SKIP() << "Only root can try this, and only where programs can get rights.";
    const fs::path folder = machine.Root() / "elsewhere";
    const fs::path program = folder / "program";
    fs::permissions(machine.Root(), fs::perms{0755});
    fs::create_directory(folder);
    fs::copy_file("/proc/self/exe", program);
    for (const char* const name : {"QUENLOR_REGISTRY_DIR", "HOME", "PROGRAMDATA", "LOCALAPPDATA",
                                   "FRAXO_PRO_ROOT_DIRECTORY", "FRAXO_PRO_SECTIONS_DIRECTORY"})
        machine.SetEnvironment(name, folder.string());
    machine.SetEnvironment("ASAN_OPTIONS", "detect_leaks=0"); // which does not work with greater rights
    for (const bool hasRights : {false, true})
    {
        fs::permissions(program, fs::perms{hasRights ? 04755U : 0755U});
        machine.SetEnvironment(CopyVariable, hasRights ? "0" : "1");
        EXPECT_EQ(ExitCode(Start(
                      [&]
                      {
            return ::setgid(65534) != 0 || ::setuid(65534) != 0 ||
                   ::execl(program.c_str(), program.c_str(), "--gtest_filter=*IgnoresVariables", nullptr);
                  })),
                  0)
            << hasRights;
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

TEST(VersionResource, IsInTheFirstMegabyteOfNotes)
{
    const ScratchMachine machine;
    const fs::path program = machine.Root() / "program";
    WriteFile(program, ExecutableWithNotes(1));
    EXPECT_NE(::GetFileVersionInfoSizeA(program.c_str(), nullptr), 0U);
    WriteFile(program, ExecutableWithNotes(3));
    EXPECT_EQ(::GetFileVersionInfoSizeA(program.c_str(), nullptr), 0U);
}
} // namespace
