#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "registry/Hive.h"
#include "registry/HiveLocation.h"
#include "registry/Hives.h"
#include "support/OrdinaryUser.h"
#include "support/ScratchRegistry.h"

namespace
{
using namespace Quenlor::StandIn::Registry;
namespace fs = std::filesystem;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr DWORD None = 4711;
const std::string Header = "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER]\n";

void Put(const char* name, const char* value)
{
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
}

class HiveTest : public ScratchRegistry
{
protected:
    static LSTATUS Set(HKEY root, DWORD number) { return SetNumber(root, "Key", "n", number); }

    /// What Set has stored; None if it cannot be read.
    static DWORD Get(HKEY root)
    {
        DWORD number = None;
        GetNumber(root, "Key", "n", number);
        return number;
    }

    static HKEY OpenKey()
    {
        HKEY key = nullptr;
        EXPECT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, "Key", 0, KEY_READ, &key), ERROR_SUCCESS);
        return key;
    }

    static unsigned Mode(const fs::path& file) { return static_cast<unsigned>(fs::status(file).permissions()); }

    /// Like Set by a second program with the same hive: it shares nothing with the functions but the files.
    LSTATUS SetByOther(DWORD number)
    {
        const std::string_view data{reinterpret_cast<const char*>(&number), sizeof number};
        return m_other.Change([&](Key& root)
                              { return root.Create("key").SetValue("n", REG_DWORD, data), ERROR_SUCCESS; });
    }

    Hive m_other{HKEY_CURRENT_USER, UserHive()};
};

// ---- freshness ------------------------------------------------------------------------------------------------------

TEST_F(HiveTest, ChangesOfOthersAreSeenByTheNextCall)
{
    ASSERT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "mine", 1), ERROR_SUCCESS);
    const HKEY key = OpenKey();
    DWORD number = None;
    for (DWORD i = 0; i < 100; ++i) // each version has the same size, many are written in the same tick of the clock
    {
        ASSERT_EQ(SetByOther(i), ERROR_SUCCESS);
        ASSERT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
        ASSERT_EQ(number, i);
        ASSERT_EQ(Get(HKEY_CURRENT_USER), i);
    }
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "mine", 2), ERROR_SUCCESS);
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS) << "on top of the other's change";
    Put("QUENLOR_REGISTRY_DIR", (Scratch() / "other").c_str());
    EXPECT_EQ(Get(HKEY_CURRENT_USER), None);
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS) << "stays in the hive that it was opened in";
    Put("QUENLOR_REGISTRY_DIR", UserHive().parent_path().c_str());

    EXPECT_EQ(m_other.Change([](Key& root) { return root.Delete("Key") ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND; }), 0);
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_KEY_DELETED);
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS);
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_KEY_DELETED) << "another key of that name";
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(HiveTest, EachVersionIsLaterThanTheOneBeforeEvenWhenTheClockIsSetBack)
{
    ASSERT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS);
    fs::last_write_time(UserHive(), fs::file_time_type::clock::now() + std::chrono::hours{1});
    const fs::file_time_type before = fs::last_write_time(UserHive());
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "key", "N", 1), ERROR_SUCCESS);
    EXPECT_EQ(fs::last_write_time(UserHive()), before) << "an identical value is not written";
    EXPECT_EQ(SetByOther(2), ERROR_SUCCESS);
    EXPECT_GT(fs::last_write_time(UserHive()), before);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), 2U);
}

TEST_F(HiveTest, ACounterThatIsUnfitOrLeftOddHidesNothing)
{
    ASSERT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS);
    for (const std::string& counter : {std::string{"\x07\0\0\0\0\0\0\0", 8}, std::string{}, std::string{"abc"}})
    {
        fs::remove(With(UserHive(), ".changes"));
        WriteFile(With(UserHive(), ".changes"), counter);
        fs::last_write_time(UserHive(), fs::last_write_time(UserHive()) + std::chrono::seconds{1}); // has it read again
        const HKEY key = OpenKey();

        // As by a writer that is killed before it can say so.
        WriteFile(With(UserHive(), ".by-hand"), Header + "[HKEY_CURRENT_USER\\Key]\n\"n\"=dword:17\n");
        fs::rename(With(UserHive(), ".by-hand"), UserHive());
        DWORD number = None;
        EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
        EXPECT_EQ(number, 0x17U);
        EXPECT_EQ(SetByOther(1), ERROR_SUCCESS);
        const std::string repaired = ReadFile(With(UserHive(), ".changes"));
        ASSERT_EQ(repaired.size(), 8U);
        EXPECT_EQ(repaired[0] % 2, 0);
        EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
    }
}

// ---- malformed hives ------------------------------------------------------------------------------------------------

TEST_F(HiveTest, MalformedLinesAreSkippedAndSavedBeforeTheHiveIsWritten)
{
    const std::string original = Header + "\"bad\"=dword:x\n[HKEY_LOCAL_MACHINE\\Foreign]\n\"f\"=\"x\"\n"
                                          "[HKEY_CURRENT_USER\\Key]\n\"n\"=dword:1\n";
    const fs::path saved = With(UserHive(), ".skipped");
    WriteFile(UserHive(), original);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), 1U);
    std::vector<RegistryFileProblem> problems;
    EXPECT_EQ(HiveProblems(HKEY_CURRENT_USER, problems), ERROR_SUCCESS);
    EXPECT_EQ(problems.size(), 3U);

    fs::create_directory(saved);
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 2), ERROR_REGISTRY_IO_FAILED);
    EXPECT_EQ(ReadFile(UserHive()), original) << "not before the text is safe";
    fs::remove(saved);

    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "m", 1), ERROR_SUCCESS);
    const std::string skipped = ReadFile(saved);
    EXPECT_THAT(skipped, HasSubstr("; line 4: a dword that is not 1 to 8 hexadecimal digits\n\"bad\"=dword:x\n"));
    EXPECT_THAT(skipped, HasSubstr("\n\"f\"=\"x\"\n"));
    EXPECT_EQ(Mode(saved), 0600U);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), 1U);

    WriteFile(UserHive(), "no registry file\n"); // all of it is skipped, and added to what was saved before
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 2), ERROR_SUCCESS);
    EXPECT_THAT(ReadFile(saved), ::testing::AllOf(StartsWith(skipped), EndsWith("\nno registry file\n\n")));
}

// ---- failures -------------------------------------------------------------------------------------------------------

TEST_F(HiveTest, DeletionsAreDoneWhereTheyStand)
{
    const std::string key = "[HKEY_CURRENT_USER\\Key]\n";
    for (const auto& [edit, number] :
         {std::pair{"\"n\"=-\n", None}, std::pair{"\"n\"=-\n\"n\"=dword:2\n", DWORD{2}},
          std::pair{"[-HKEY_CURRENT_USER\\KEY]\n", None}, std::pair{"[-HKEY_LOCAL_MACHINE\\Key]\n", DWORD{1}}})
    {
        WriteFile(UserHive(), Header + key + "\"n\"=dword:1\n" + edit);
        EXPECT_EQ(Get(HKEY_CURRENT_USER), number) << edit;
    }
}

TEST_F(HiveTest, OneThatIsUnusableIsLeftAlone)
{
    fs::create_directories(UserHive());
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_REGISTRY_IO_FAILED);
    EXPECT_TRUE(fs::is_directory(UserHive()));

    WriteFile(MachineHive(), "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Key]\n\"n\"=dword:1\n");
    fs::permissions(MachineHive().parent_path(), fs::perms::all); // so that only the file itself is protected
    for (const bool isReadable : {false, true})
    {
        fs::permissions(MachineHive(), isReadable ? fs::perms{0444} : fs::perms::none);
        const OrdinaryUser user{Scratch()};
        EXPECT_EQ(Get(HKEY_LOCAL_MACHINE), isReadable ? 1 : None);
        HKEY key = HKEY_LOCAL_MACHINE;
        const REGSAM rights = isReadable ? KEY_WRITE : KEY_READ;
        EXPECT_EQ(::RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Key", 0, rights, &key), ERROR_ACCESS_DENIED);
        EXPECT_EQ(key, nullptr);
        EXPECT_EQ(SetNumber(HKEY_LOCAL_MACHINE, "New", "n", 1), ERROR_ACCESS_DENIED);
        EXPECT_EQ(::RegDeleteTreeA(HKEY_LOCAL_MACHINE, "Key"), ERROR_ACCESS_DENIED);
    }
}

TEST_F(HiveTest, AnEditIsDoneWhollyOrNotAtAll)
{
    ASSERT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS);
    const std::string before = ReadFile(UserHive());
    EXPECT_EQ(ChangeHive(HKEY_CURRENT_USER, [](Key& root) { return root.Clear(), ERROR_BADKEY; }), ERROR_BADKEY);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), 1U);
    const auto fail = [](Key& root) -> LSTATUS { throw(root.Clear(), std::runtime_error{"no"}); };
    EXPECT_THROW(ChangeHive(HKEY_CURRENT_USER, fail), std::runtime_error);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), 1U);
    EXPECT_EQ(ReadFile(UserHive()), before);
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
        EXPECT_EQ(Set(HKEY_CURRENT_USER, written), ERROR_SUCCESS);
        EXPECT_EQ(Get(HKEY_CURRENT_USER), written);
        EXPECT_TRUE(fs::is_symlink(UserHive()));
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(target)));
        EXPECT_TRUE(fs::exists(With(target, ".lock"))) << "one lock for all that lead to this file";
    }
}

TEST_F(HiveTest, FilesHaveTheirPermissionsWhateverTheUmask)
{
    for (const mode_t mask : {mode_t{0}, mode_t{077}})
    {
        for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
        {
            const bool isShared = root == HKEY_LOCAL_MACHINE;
            const fs::path file = isShared ? MachineHive() : UserHive();
            const mode_t old = ::umask(mask);
            EXPECT_EQ(Set(root, 1), ERROR_SUCCESS);
            ::umask(old);
            EXPECT_EQ(Mode(file.parent_path()), isShared ? 0755U : 0700U);
            EXPECT_EQ(Mode(file), isShared ? 0644U : 0600U);
            EXPECT_EQ(Mode(With(file, ".changes")), isShared ? 0644U : 0600U);
            EXPECT_EQ(Mode(With(file, ".lock")), 0600U) << "who cannot write must not be able to hold up writers";
            fs::remove_all(file.parent_path());
        }
    }
    WriteFile(MachineHive(), "");
    fs::permissions(MachineHive(), fs::perms{0640});
    EXPECT_EQ(Set(HKEY_LOCAL_MACHINE, 1), ERROR_SUCCESS);
    EXPECT_EQ(Mode(MachineHive()), 0640U) << "chosen by the administrator";
    EXPECT_FALSE(fs::exists(With(MachineHive(), ".skipped"))) << "an empty file is an empty hive";
}

// ---- places ---------------------------------------------------------------------------------------------------------

TEST_F(HiveTest, LieWhereTheEnvironmentSays)
{
    const std::string machine = "/var/lib/quenlor/registry/HKEY_LOCAL_MACHINE.reg";
    const struct
    {
        const char* registryDir;
        const char* configHome;
        const char* home;
        std::string machine;
        std::string user;
    } places[] = {
        {"/r", "/c", "/h", "/r/HKEY_LOCAL_MACHINE.reg", "/r/HKEY_CURRENT_USER.reg"},
        {"", "/c", "/h", machine, "/c/quenlor/registry/HKEY_CURRENT_USER.reg"},
        {"r", "c", "/h", machine, "/h/.config/quenlor/registry/HKEY_CURRENT_USER.reg"},
        {nullptr, "", "h", machine, ""},
        {nullptr, nullptr, nullptr, machine, ""},
    };
    for (const auto& place : places)
    {
        Put("QUENLOR_REGISTRY_DIR", place.registryDir);
        Put("XDG_CONFIG_HOME", place.configHome);
        Put("HOME", place.home);
        EXPECT_EQ(HivePath(HKEY_LOCAL_MACHINE), place.machine);
        EXPECT_EQ(HivePath(HKEY_CURRENT_USER), place.user);
    }

    // Without a place nothing is there, and nothing is created, above all not in the current directory.
    fs::current_path(Scratch());
    EXPECT_EQ(Get(HKEY_CURRENT_USER), None);
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(fs::is_empty(Scratch()));
    fs::current_path(Scratch().parent_path());
}

TEST_F(HiveTest, ReadingCreatesNothing)
{
    EXPECT_EQ(Get(HKEY_CURRENT_USER), None);
    EXPECT_EQ(Get(HKEY_CLASSES_ROOT), None);
    EXPECT_EQ(::RegDeleteTreeA(HKEY_CURRENT_USER, "Key"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(::RegDeleteValueA(HKEY_LOCAL_MACHINE, "n"), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(fs::is_empty(Scratch()));
}

// ---- threads --------------------------------------------------------------------------------------------------------

TEST_F(HiveTest, AnyThreadMayCall)
{
    const auto work = [](const char* name)
    {
        for (DWORD i = 0; i < 10; ++i)
        {
            DWORD number = None;
            EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, name, name, i), ERROR_SUCCESS);
            EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, name, name, number), ERROR_SUCCESS);
            EXPECT_EQ(number, i);
        }
    };
    const std::jthread threads[] = {std::jthread{work, "0"}, std::jthread{work, "1"}, std::jthread{work, "2"}};
}
} // namespace
