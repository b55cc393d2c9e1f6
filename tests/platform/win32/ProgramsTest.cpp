#include <Platform/Win32.h>

#include <csignal>
#include <cstdlib>
#include <elf.h>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/prctl.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <Quenlor/QnFileName.h>
#include <gtest/gtest.h>

#include "DirectoryConfig.h"
#include "UserSettingsConfig.h"
#include "VersionConfig.h"
#include "registry/Hives.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/Printers.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor;
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;

pid_t Start(const std::function<int()>& body)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body());
    return child;
}

int ExitCode(pid_t child)
{
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

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
    char folder[MAX_PATH] = "";
    ::SHGetFolderPathA(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder);
    for (const std::string& place : {HivePath(HKEY_CURRENT_USER), HivePath(HKEY_LOCAL_MACHINE), std::string{folder},
                                     DirectoryConfig::GetFRAXOProRoot().ToStdString()})
        EXPECT_EQ(place.find("elsewhere") != std::string::npos, areMoved) << place;
}

// The caller of a set-user-ID program must not choose what it reads with its greater rights.
TEST(RunningProgram, WithGreaterRightsIgnoresVariables)
{
    if (const char* const areMoved = std::getenv(CopyVariable))
        return CheckPlaces(*areMoved == '1');
    ScratchMachine machine;
    struct statvfs volume = {};
    ASSERT_EQ(::statvfs(machine.Root().c_str(), &volume), 0);
    if (::geteuid() != 0 || (volume.f_flag & ST_NOSUID) || ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1)
        GTEST_SKIP() << "Only root can try this, and only where programs can get rights.";
    const fs::path folder = machine.Root() / "elsewhere", program = folder / "program";
    fs::permissions(machine.Root(), fs::perms{0755});
    fs::create_directory(folder);
    fs::copy_file("/proc/self/exe", program);
    for (const char* const name : {"QUENLOR_REGISTRY_DIR", "HOME", "LOCALAPPDATA", "FRAXO_PRO_ROOT_DIRECTORY"})
        machine.SetEnvironment(name, folder.string());
    machine.SetEnvironment("ASAN_OPTIONS", "detect_leaks=0"); // which does not work with greater rights
    const auto runAsOrdinaryUser = [&]
    {
        return ::setgid(65534) != 0 || ::setuid(65534) != 0 ||
               ::execl(program.c_str(), program.c_str(), "--gtest_filter=*IgnoresVariables", nullptr);
    };
    for (const bool hasRights : {false, true})
    {
        fs::permissions(program, fs::perms{hasRights ? 04755U : 0755U});
        machine.SetEnvironment(CopyVariable, hasRights ? "0" : "1");
        EXPECT_EQ(ExitCode(Start(runAsOrdinaryUser)), 0) << hasRights;
    }
}

TEST(VersionResource, IsInTheFirstMegabyteOfNotes)
{
    const ScratchMachine machine;
    const std::string program = (machine.Root() / "program").string();
    std::string bytes = ReadFile("/proc/self/exe");
    const auto& header = *reinterpret_cast<const Elf64_Ehdr*>(bytes.data());
    auto* const segments = reinterpret_cast<Elf64_Phdr*>(bytes.data() + header.e_phoff);
    for (const bool areLonger : {false, true}) // than a megabyte, if the file can be believed
    {
        for (int i = 0; i < header.e_phnum; ++i)
            segments[i].p_filesz += segments[i].p_type == PT_NOTE && areLonger ? 1 << 20 : 0;
        WriteFile(program, bytes);
        EXPECT_EQ(::GetFileVersionInfoSizeA(program.c_str(), nullptr) == 0, areLonger);
    }
}

TEST(GetLongPathNameW, HasTheDisksLetterCaseAndTheCallersSeparators)
{
    const ScratchMachine machine;
    WriteFile(machine.Root() / "Pl\u00FCgIns" / "Plugins.ini", "");
    const std::wstring root = machine.Root().wstring();
    const std::wstring asked = root + L"\\PL\u00DCGINS/plugins.INI";

    std::wstring buffer(asked.length(), L'#');
    const auto length = static_cast<DWORD>(asked.length());
    EXPECT_EQ(::GetLongPathNameW(asked.c_str(), buffer.data(), length), length + 1);
    EXPECT_EQ(buffer, std::wstring(length, L'#'));
    EXPECT_EQ(::GetLongPathNameW(asked.c_str(), buffer.data(), length + 1), length);
    EXPECT_EQ(buffer, root + L"\\Pl\u00FCgIns/Plugins.ini");
    EXPECT_EQ(::GetShortPathNameW(buffer.c_str(), nullptr, 0), length + 1);
    WriteFile(machine.Root() / "ab/file", "");
    WriteFile(machine.Root() / "AB/other", "");
    EXPECT_NE(::GetLongPathNameW((root + L"/ab/FILE").c_str(), nullptr, 0), 0U) << "the same letter case comes first";
    EXPECT_EQ(::GetLongPathNameW((L"C:" + buffer).c_str(), buffer.data(), length), 0U);
}
} // namespace
