#include <array>
#include <chrono>
#include <csignal>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "registry/Hive.h"
#include "registry/HiveLocation.h"
#include "registry/Hives.h"
#include "standin/ScratchRegistry.h"

namespace
{
using namespace Quenlor::StandIn::Registry;
namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

constexpr char Header[] = "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER]\n";

/// Gives up the rights of root, which no permission holds back, for its life.
class OrdinaryUser final
{
public:
    explicit OrdinaryUser(const fs::path& scratch)
    {
        if (::geteuid() != 0)
            return;
        fs::permissions(scratch, fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_exec);
        m_isSwitched = ::seteuid(65534) == 0;
    }
    ~OrdinaryUser()
    {
        if (m_isSwitched && ::seteuid(0) != 0)
            std::abort();
    }

private:
    bool m_isSwitched = false;
};

class HiveTest : public ScratchRegistry
{
protected:
    /// A second program with the same hive: it shares nothing with the functions but the files.
    Hive& Other() { return m_other; }

    LSTATUS SetByOther(const char* name, DWORD number)
    {
        return m_other.Change(
            [&](Key& root)
            {
                root.SetValue(name, REG_DWORD, {reinterpret_cast<const char*>(&number), sizeof number});
                return ERROR_SUCCESS;
            });
    }

    static unsigned Mode(const fs::path& file) { return static_cast<unsigned>(fs::status(file).permissions()); }

    std::vector<std::string> Files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator{UserHive().parent_path()})
            names.push_back(entry.path().filename());
        return names;
    }

private:
    Hive m_other{HKEY_CURRENT_USER, UserHive()};
};

// ---- freshness ------------------------------------------------------------------------------------------------------

TEST_F(HiveTest, ChangesOfOthersAreSeenByTheNextCall)
{
    ASSERT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "mine", 1), ERROR_SUCCESS);
    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, "Key", 0, KEY_ALL_ACCESS, &key), ERROR_SUCCESS);
    for (DWORD i = 0; i < 100; ++i) // each version has the same size, many are written in the same tick of the clock
    {
        const LSTATUS status = Other().Change(
            [&](Key& root)
            {
                root.Create("key").SetValue("n", REG_DWORD, {reinterpret_cast<const char*>(&i), sizeof i});
                return ERROR_SUCCESS;
            });
        ASSERT_EQ(status, ERROR_SUCCESS);
        DWORD number = 4711;
        ASSERT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
        ASSERT_EQ(number, i);
        ASSERT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_SUCCESS);
        ASSERT_EQ(number, i);
    }
    DWORD number = 0;
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "mine", 2), ERROR_SUCCESS); // on top of the other's change
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);

    EXPECT_EQ(Other().Change([](Key& root) { return root.Delete("Key") ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND; }), 0);
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_KEY_DELETED);
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 1), ERROR_SUCCESS);
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_KEY_DELETED) << "another key of that name";
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(HiveTest, EachVersionIsLaterThanTheOneBeforeEvenWhenTheClockIsSetBack)
{
    ASSERT_EQ(SetByOther("n", 1), ERROR_SUCCESS);
    fs::last_write_time(UserHive(), fs::file_time_type::clock::now() + std::chrono::hours{1});
    for (DWORD i = 2; i < 5; ++i)
    {
        DWORD number = 0;
        EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "n", number), ERROR_SUCCESS);
        EXPECT_EQ(number, i - 1);
        const fs::file_time_type before = fs::last_write_time(UserHive());
        EXPECT_EQ(SetByOther("n", i), ERROR_SUCCESS);
        EXPECT_GT(fs::last_write_time(UserHive()), before);
    }
}

TEST_F(HiveTest, ATextEditorsChangesAreSeenByTheNextOpen)
{
    DWORD number = 0;
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_FILE_NOT_FOUND);
    Write(UserHive(), std::string{Header} + "[HKEY_CURRENT_USER\\Key]\n\"n\"=dword:7\n");
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_SUCCESS);
    EXPECT_EQ(number, 7U);
    fs::remove(UserHive());
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_FILE_NOT_FOUND);
}

TEST_F(HiveTest, ACounterThatIsUnfitOrLeftOddHidesNothing)
{
    ASSERT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 1), ERROR_SUCCESS);
    for (const std::string& counter : {std::string{"\x07\0\0\0\0\0\0\0", 8}, std::string{}, std::string{"abc"}})
    {
        fs::remove(With(UserHive(), ".changes"));
        Write(With(UserHive(), ".changes"), counter);
        fs::last_write_time(UserHive(), fs::last_write_time(UserHive()) + std::chrono::seconds{1}); // has it read again
        HKEY key = nullptr;
        ASSERT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, "Key", 0, KEY_READ, &key), ERROR_SUCCESS);

        // As by a writer that is killed before it can say so.
        Write(With(UserHive(), ".by-hand"), std::string{Header} + "[HKEY_CURRENT_USER\\Key]\n\"n\"=dword:17\n");
        fs::rename(With(UserHive(), ".by-hand"), UserHive());
        DWORD number = 0;
        EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
        EXPECT_EQ(number, 0x17U);

        EXPECT_EQ(SetByOther("x", 1), ERROR_SUCCESS);
        const std::string repaired = Content(With(UserHive(), ".changes"));
        ASSERT_EQ(repaired.size(), 8U);
        EXPECT_EQ(repaired[0] % 2, 0);
        EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
    }
}

TEST_F(HiveTest, SettingAnIdenticalValueWritesNothing)
{
    ASSERT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 1), ERROR_SUCCESS);
    const FileVersion before = FileVersion::Of(UserHive());
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "key", "N", 1), ERROR_SUCCESS);
    EXPECT_TRUE(FileVersion::Of(UserHive()) == before);
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 2), ERROR_SUCCESS);
    EXPECT_FALSE(FileVersion::Of(UserHive()) == before);
}

// ---- malformed hives ------------------------------------------------------------------------------------------------

TEST_F(HiveTest, MalformedLinesAreSkippedAndSavedBeforeTheHiveIsWritten)
{
    const std::string original = std::string{Header} + "\"n\"=dword:1\n\"bad\"=dword:x\n; comment\n"
                                                       "[HKEY_LOCAL_MACHINE\\Foreign]\n\"f\"=\"x\"\n";
    Write(UserHive(), original);
    DWORD number = 0;
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "n", number), ERROR_SUCCESS);
    std::vector<RegistryFileProblem> problems;
    EXPECT_EQ(HiveProblems(HKEY_CURRENT_USER, problems), ERROR_SUCCESS);
    ASSERT_EQ(problems.size(), 3U);
    EXPECT_EQ(problems[0].line, 5U);
    EXPECT_EQ(Content(UserHive()), original) << "reading changes nothing";

    fs::create_directory(With(UserHive(), ".skipped"));
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "m", 1), ERROR_REGISTRY_IO_FAILED);
    EXPECT_EQ(Content(UserHive()), original) << "not before the text is safe";
    fs::remove(With(UserHive(), ".skipped"));

    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "m", 1), ERROR_SUCCESS);
    const std::string skipped = Content(With(UserHive(), ".skipped"));
    EXPECT_THAT(skipped, HasSubstr("; line 5: a dword that is not 1 to 8 hexadecimal digits\n\"bad\"=dword:x\n"));
    EXPECT_THAT(skipped, HasSubstr("[HKEY_LOCAL_MACHINE\\Foreign]\n"));
    EXPECT_THAT(skipped, HasSubstr("\n\"f\"=\"x\"\n"));
    EXPECT_EQ(Mode(With(UserHive(), ".skipped")), 0600U);
    EXPECT_EQ(HiveProblems(HKEY_CURRENT_USER, problems), ERROR_SUCCESS);
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "n", number), ERROR_SUCCESS);

    Write(UserHive(), "no registry file\n"); // all of it is skipped, and added to what was saved before
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "m", 2), ERROR_SUCCESS);
    EXPECT_THAT(Content(With(UserHive(), ".skipped")), ::testing::StartsWith(skipped));
    EXPECT_THAT(Content(With(UserHive(), ".skipped")), ::testing::EndsWith("\nno registry file\n\n"));
}

TEST_F(HiveTest, AnEmptyFileIsAnEmptyHive)
{
    Write(UserHive(), "\n");
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 1), ERROR_SUCCESS);
    EXPECT_THAT(Files(), UnorderedElementsAre("HKEY_CURRENT_USER.reg", "HKEY_CURRENT_USER.reg.lock",
                                              "HKEY_CURRENT_USER.reg.changes"));
}

// ---- failures -------------------------------------------------------------------------------------------------------

TEST_F(HiveTest, AHiveThatCannotBeReadIsLeftAlone)
{
    fs::create_directories(UserHive());
    HKEY key = nullptr;
    EXPECT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, "Key", 0, KEY_READ, &key), ERROR_REGISTRY_IO_FAILED);
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 1), ERROR_REGISTRY_IO_FAILED);
    EXPECT_TRUE(fs::is_directory(UserHive()));

    Write(MachineHive(), "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Key]\n");
    fs::permissions(MachineHive(), fs::perms::none);
    const OrdinaryUser user{Scratch()};
    EXPECT_EQ(::RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Key", 0, KEY_READ, &key), ERROR_ACCESS_DENIED);
    EXPECT_EQ(key, nullptr);
    EXPECT_EQ(SetNumber(HKEY_LOCAL_MACHINE, "Key", "n", 1), ERROR_ACCESS_DENIED);
}

TEST_F(HiveTest, AnOrdinaryUserReadsTheMachinesHiveAndCannotOpenItForWriting)
{
    ASSERT_EQ(SetNumber(HKEY_LOCAL_MACHINE, "Key", "n", 1), ERROR_SUCCESS);
    fs::permissions(MachineHive(), fs::perms{0444});
    fs::permissions(MachineHive().parent_path(), fs::perms::all); // so that only the file itself is protected
    const OrdinaryUser user{Scratch()};
    DWORD number = 0;
    EXPECT_EQ(GetNumber(HKEY_LOCAL_MACHINE, "Key", "n", number), ERROR_SUCCESS);
    HKEY key = HKEY_LOCAL_MACHINE;
    EXPECT_EQ(::RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Key", 0, KEY_WRITE, &key), ERROR_ACCESS_DENIED);
    EXPECT_EQ(key, nullptr);
    EXPECT_EQ(SetNumber(HKEY_LOCAL_MACHINE, "Key", "n", 2), ERROR_ACCESS_DENIED);
    EXPECT_EQ(SetNumber(HKEY_LOCAL_MACHINE, "New", "n", 2), ERROR_ACCESS_DENIED);
    EXPECT_EQ(::RegDeleteTreeA(HKEY_LOCAL_MACHINE, "Key"), ERROR_ACCESS_DENIED);
}

TEST_F(HiveTest, AFailedWriteChangesNothingAndLeavesNothingBehind)
{
    ASSERT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 1), ERROR_SUCCESS);
    const std::string before = Content(UserHive());
    rlimit old{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    const rlimit small{.rlim_cur = 64, .rlim_max = old.rlim_max}; // enough for the counter
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 2), ERROR_REGISTRY_IO_FAILED);
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "New", "n", 2), ERROR_REGISTRY_IO_FAILED);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
    std::signal(SIGXFSZ, oldHandler);

    DWORD number = 0;
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_SUCCESS);
    EXPECT_EQ(number, 1U);
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "New", "n", number), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Content(UserHive()), before);
    EXPECT_FALSE(fs::exists(With(UserHive(), ".new")));
}

TEST_F(HiveTest, AnEditIsDoneWhollyOrNotAtAll)
{
    ASSERT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 1), ERROR_SUCCESS);
    const std::string before = Content(UserHive());
    const auto edit = [](Key& root) { root.Clear(), root.SetValue("x", REG_NONE, ""); };
    EXPECT_EQ(ChangeHive(HKEY_CURRENT_USER, [&](Key& root) { return edit(root), ERROR_BADKEY; }), ERROR_BADKEY);
    DWORD number = 0;
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_SUCCESS);
    EXPECT_THROW(
        ChangeHive(HKEY_CURRENT_USER, [&](Key& root) -> LSTATUS { throw(edit(root), std::runtime_error{"no"}); }),
        std::runtime_error);
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_SUCCESS);
    EXPECT_EQ(Content(UserHive()), before);
    EXPECT_EQ(ChangeHive(HKEY_CLASSES_ROOT, [](Key&) { return ERROR_SUCCESS; }), ERROR_INVALID_HANDLE);
}

// ---- files ----------------------------------------------------------------------------------------------------------

TEST_F(HiveTest, ALinkIsWrittenThrough)
{
    const fs::path target = Scratch() / "elsewhere/target.reg";
    fs::create_directories(target.parent_path());
    fs::create_directories(UserHive().parent_path());
    fs::create_symlink("../elsewhere/link.reg", UserHive());
    fs::create_symlink("target.reg", target.parent_path() / "link.reg");
    for (const DWORD written : {1U, 2U}) // first it leads nowhere
    {
        EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", written), ERROR_SUCCESS);
        DWORD number = 0;
        EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_SUCCESS);
        EXPECT_EQ(number, written);
        EXPECT_TRUE(fs::is_symlink(UserHive()));
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(target)));
        EXPECT_TRUE(fs::exists(With(target, ".lock"))) << "one lock for all that lead to this file";
    }
}

TEST_F(HiveTest, FilesHaveTheirPermissionsWhateverTheUmask)
{
    for (const mode_t mask : {mode_t{0}, mode_t{077}})
    {
        ::setenv("QUENLOR_REGISTRY_DIR", (Scratch() / "machine/hives").c_str(), 1);
        const mode_t old = ::umask(mask);
        EXPECT_EQ(SetNumber(HKEY_LOCAL_MACHINE, "Key", "n", 1), ERROR_SUCCESS);
        ::setenv("QUENLOR_REGISTRY_DIR", (Scratch() / "user/hives").c_str(), 1);
        EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 1), ERROR_SUCCESS);
        ::umask(old);
        EXPECT_EQ(Mode(Scratch() / "user"), 0700U);
        EXPECT_EQ(Mode(Scratch() / "user/hives"), 0700U);
        EXPECT_EQ(Mode(Scratch() / "user/hives/HKEY_CURRENT_USER.reg"), 0600U);
        EXPECT_EQ(Mode(Scratch() / "user/hives/HKEY_CURRENT_USER.reg.changes"), 0600U);
        EXPECT_EQ(Mode(Scratch() / "machine/hives"), 0755U);
        EXPECT_EQ(Mode(Scratch() / "machine/hives/HKEY_LOCAL_MACHINE.reg"), 0644U);
        EXPECT_EQ(Mode(Scratch() / "machine/hives/HKEY_LOCAL_MACHINE.reg.changes"), 0644U);
        EXPECT_EQ(Mode(Scratch() / "machine/hives/HKEY_LOCAL_MACHINE.reg.lock"), 0600U)
            << "who cannot write must not be able to hold up writers";
        fs::remove_all(Scratch() / "user");
        fs::remove_all(Scratch() / "machine");
    }
    ::setenv("QUENLOR_REGISTRY_DIR", UserHive().parent_path().c_str(), 1);
    Write(MachineHive(), "");
    fs::permissions(MachineHive(), fs::perms{0640});
    EXPECT_EQ(SetNumber(HKEY_LOCAL_MACHINE, "Key", "n", 1), ERROR_SUCCESS);
    EXPECT_EQ(Mode(MachineHive()), 0640U) << "chosen by the administrator";
}

TEST_F(HiveTest, NoDescriptorAndNoFileIsLeftBehind)
{
    const auto openFiles = [] { return std::distance(fs::directory_iterator{"/proc/self/fd"}, {}); };
    Write(UserHive(), std::string{Header} + "malformed\n");
    Write(With(UserHive(), ".new"), "left by a writer that was killed");
    fs::create_directories(MachineHive());
    const auto before = openFiles();
    for (DWORD i = 0; i < 5; ++i)
    {
        DWORD number = 0;
        EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", i), ERROR_SUCCESS);
        EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_SUCCESS);
        EXPECT_EQ(::RegDeleteValueA(HKEY_CURRENT_USER, "missing"), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(SetNumber(HKEY_LOCAL_MACHINE, "Key", "n", i), ERROR_REGISTRY_IO_FAILED);
    }
    EXPECT_EQ(openFiles(), before);
    EXPECT_FALSE(fs::exists(With(UserHive(), ".new")));
}

// ---- places ---------------------------------------------------------------------------------------------------------

struct Place
{
    const char* registryDir;
    const char* configHome;
    const char* home;
    std::string machine;
    std::string user;
};

void Put(const char* name, const char* value)
{
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
}

TEST_F(HiveTest, LieWhereTheEnvironmentSays)
{
    const std::string machine = "/var/lib/quenlor/registry/HKEY_LOCAL_MACHINE.reg";
    const std::array places{
        Place{"/r", "/c", "/h", "/r/HKEY_LOCAL_MACHINE.reg", "/r/HKEY_CURRENT_USER.reg"},
        Place{"", "/c", "/h", machine, "/c/quenlor/registry/HKEY_CURRENT_USER.reg"},
        Place{"r", "c", "/h", machine, "/h/.config/quenlor/registry/HKEY_CURRENT_USER.reg"},
        Place{nullptr, nullptr, "/h", machine, "/h/.config/quenlor/registry/HKEY_CURRENT_USER.reg"},
        Place{nullptr, nullptr, "h", machine, ""},
        Place{nullptr, "", nullptr, machine, ""},
    };
    const std::array<const char*, 2> names{"XDG_CONFIG_HOME", "HOME"};
    std::map<std::string, std::optional<std::string>> old;
    for (const char* const name : names)
        old[name] = ::getenv(name) ? std::optional<std::string>{::getenv(name)} : std::nullopt;
    for (const Place& place : places)
    {
        Put("QUENLOR_REGISTRY_DIR", place.registryDir);
        Put("XDG_CONFIG_HOME", place.configHome);
        Put("HOME", place.home);
        EXPECT_EQ(HivePath(HKEY_LOCAL_MACHINE), place.machine);
        EXPECT_EQ(HivePath(HKEY_CURRENT_USER), place.user);
        EXPECT_TRUE(LocateHive(HKEY_CURRENT_USER).Is(place.user));
        EXPECT_FALSE(LocateHive(HKEY_CURRENT_USER).Is(place.user + "x"));
    }

    // Without a place nothing is there, and nothing is created, above all not in the current directory.
    const fs::path here = fs::current_path();
    fs::current_path(Scratch());
    DWORD number = 0;
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 1), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(fs::is_empty(Scratch()));
    fs::current_path(here);
    for (const char* const name : names)
        Put(name, old[name] ? old[name]->c_str() : nullptr);
}

TEST_F(HiveTest, ReadingCreatesNothing)
{
    DWORD number = 0;
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(GetNumber(HKEY_CLASSES_ROOT, "Key", "n", number), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(::RegDeleteTreeA(HKEY_CURRENT_USER, "Key"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(::RegDeleteValueA(HKEY_LOCAL_MACHINE, "n"), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(fs::is_empty(Scratch()));
}

TEST_F(HiveTest, AnOpenKeyStaysInTheHiveThatItWasOpenedIn)
{
    ASSERT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 1), ERROR_SUCCESS);
    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, "Key", 0, KEY_READ, &key), ERROR_SUCCESS);
    ::setenv("QUENLOR_REGISTRY_DIR", (Scratch() / "other").c_str(), 1);
    DWORD number = 0;
    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
}

// ---- threads --------------------------------------------------------------------------------------------------------

TEST_F(HiveTest, AnyThreadMayCall)
{
    std::vector<std::thread> threads;
    for (DWORD id = 0; id < 4; ++id)
    {
        threads.emplace_back(
            [id]
            {
                const std::string own = "Key\\" + std::to_string(id);
                for (DWORD i = 0; i < 10; ++i)
                {
                    DWORD number = 0;
                    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, own.c_str(), "n", i), ERROR_SUCCESS);
                    EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, own.c_str(), "n", number), ERROR_SUCCESS);
                    EXPECT_EQ(number, i);
                }
            });
    }
    for (std::thread& thread : threads)
        thread.join();
}
} // namespace
