#include <Platform/Win32.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
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

TEST(RunningPrograms, OfOtherUsersAreFound)
{
    const ScratchMachine machine;
    const fs::path program = machine.Root() / "a program with a long name";
    fs::copy_file("/bin/sleep", program);
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(::execl(program.c_str(), program.c_str(), "60", nullptr));
    {
        const OrdinaryUser user{machine.Root()};
        const auto isFound = [] { return UserSettingsConfig::IsExeRunning("a program with a long name"); };
        for (int i = 0; i < 10'000 && !isFound(); ++i)
            ::usleep(1000); // until it has started
        EXPECT_TRUE(isFound());
        EXPECT_FALSE(UserSettingsConfig::IsExeRunning("a program"));
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
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
    for (const char* const name : {"Editor", "Edi\xFFtor"})
    {
        const fs::path program = machine.Root() / name;
        fs::copy_file("/proc/self/exe", program);
        EXPECT_EQ(std::system(('\'' + program.string() + "' --gtest_filter=*WhenReplaced").c_str()), 0) << program;
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
    for (const bool hasRights : {false, true})
    {
        fs::permissions(program, fs::perms{hasRights ? 04755U : 0755U});
        machine.SetEnvironment(CopyVariable, hasRights ? "0" : "1");
        const std::string asOrdinaryUser = "setpriv --reuid=65534 --regid=65534 --clear-groups '";
        EXPECT_EQ(std::system((asOrdinaryUser + program.string() + "' --gtest_filter=*IgnoresVariables").c_str()), 0)
            << hasRights;
    }
}

TEST(GetLongPathNameW, HasTheDisksLetterCaseAndTheCallersSeparators)
{
    const ScratchMachine machine;
    WriteFile(machine.Root() / "Pl\u00FCgIns" / "Plugins.ini", "");
    const std::wstring root = machine.Root().wstring();
    wchar_t buffer[MAX_PATH] = {};
    EXPECT_NE(::GetLongPathNameW((root + L"\\PL\u00DCGINS/plugins.INI").c_str(), buffer, MAX_PATH), 0U);
    EXPECT_EQ(buffer, root + L"\\Pl\u00FCgIns/Plugins.ini");
}
} // namespace
