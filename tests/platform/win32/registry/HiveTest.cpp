#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "registry/Hive.h"
#include "registry/Hives.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/ScratchMachine.h"

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

class HiveTest : public ::testing::Test
{
protected:
    HiveTest()
    {
        fs::create_directory(m_scratch);
        m_machine.SetEnvironment("QUENLOR_REGISTRY_DIR", UserHive().parent_path().string());
        LocateHives();
    }

    fs::path Scratch() const { return m_scratch; }
    fs::path UserHive() const { return m_scratch / "hives/HKEY_CURRENT_USER.reg"; }
    fs::path MachineHive() const { return m_scratch / "hives/HKEY_LOCAL_MACHINE.reg"; }

    static fs::path With(fs::path file, const char* suffix) { return file += suffix; }

    static LSTATUS SetNumber(HKEY root, const char* subKey, const char* name, DWORD number)
    {
        HKEY key = nullptr;
        LSTATUS status = ::RegCreateKeyExA(root, subKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
        if (status == ERROR_SUCCESS)
            status = ::RegSetValueExA(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
        ::RegCloseKey(key);
        return status;
    }

    static LSTATUS GetNumber(HKEY key, const char* name, DWORD& number)
    {
        DWORD size = sizeof number;
        return ::RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(&number), &size);
    }

    static LSTATUS GetNumber(HKEY root, const char* subKey, const char* name, DWORD& number)
    {
        HKEY key = nullptr;
        LSTATUS status = ::RegOpenKeyExA(root, subKey, 0, KEY_READ, &key);
        if (status == ERROR_SUCCESS)
            status = GetNumber(key, name, number);
        ::RegCloseKey(key);
        return status;
    }

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

    ScratchMachine m_machine;
    const fs::path m_scratch = m_machine.Root() / "empty";
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
        ASSERT_EQ(Get(HKEY_CURRENT_USER), i);
    }
    EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "mine", 2), ERROR_SUCCESS);
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS) << "on top of the other's change";

    EXPECT_EQ(SetByOther(4712), ERROR_SUCCESS);
    while (number != 4712) // a key that is open already notices within some ticks of the coarse clock
        ASSERT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
    EXPECT_EQ(m_other.Change([](Key& root) { return root.Delete("Key") ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND; }), 0);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), None);
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

    WriteFile(UserHive(), Header + "more\n"); // is added to what was saved before
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 2), ERROR_SUCCESS);
    EXPECT_THAT(ReadFile(saved), ::testing::AllOf(StartsWith(skipped), EndsWith("a key nor a value\nmore\n")));
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

TEST_F(HiveTest, WhatIsNotAHiveIsAnErrorAndNeverReplaced)
{
    fs::create_directories(UserHive().parent_path());
    const std::pair<const char*, void (*)(const fs::path&)> others[] =
        {
            {"a pipe", [](const fs::path& path) { ::mkfifo(path.c_str(), 0600); }},
            {"a device", [](const fs::path& path) { fs::create_symlink("/dev/zero", path); }},
            {"a file of impossible size", [](const fs::path& path)
             {
        WriteFile(path, "");
        fs::resize_file(path, std::uintmax_t{1} << 40);
             }},
            {"another file", [](const fs::path& path) { WriteFile(path, "user:secret\n"); }},
    };
    for (const auto& [name, make] : others)
    {
        SCOPED_TRACE(name);
        make(UserHive());
        const auto type = fs::status(UserHive()).type();
        HKEY key = nullptr;
        const LSTATUS error = std::string_view{name} == "another file" ? ERROR_BADDB : ERROR_REGISTRY_IO_FAILED;
        EXPECT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, "Key", 0, KEY_READ, &key), error);
        EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), error);
        EXPECT_EQ(fs::status(UserHive()).type(), type);
        EXPECT_FALSE(fs::exists(With(UserHive(), ".skipped")));
        fs::remove(UserHive());
    }
    for (const char* const suffix : {".lock", ".skipped", ".new"}) // nor does a pipe in their places make anyone wait
    {
        WriteFile(UserHive(), Header + "bad\n");
        fs::remove(With(UserHive(), suffix));
        ASSERT_EQ(::mkfifo(With(UserHive(), suffix).c_str(), 0600), 0);
        const bool isNeeded = std::string_view{suffix} == ".skipped";
        EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), isNeeded ? ERROR_REGISTRY_IO_FAILED : ERROR_SUCCESS) << suffix;
        EXPECT_EQ(ReadFile(UserHive()) == Header + "bad\n", isNeeded) << suffix;
        fs::remove(With(UserHive(), suffix));
    }
}

TEST_F(HiveTest, ReadersSurviveWhateverHappensToTheFilesBesideIt)
{
    ASSERT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS);
    const HKEY key = OpenKey();
    std::vector<fs::path> files;
    for (const fs::path& file : fs::directory_iterator{UserHive().parent_path()})
        files.push_back(file);
    for (const fs::path& file : files)
    {
        if (file == UserHive())
            continue;
        DWORD number = None;
        fs::resize_file(file, 0);
        EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
        fs::remove(file);
        EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
    }
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(HiveTest, WhoOwnsTheFolderWritesIt)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "Only root can be lured.";
    constexpr uid_t other = 65534;
    const fs::path users = Scratch() / "users";
    const fs::path target = Scratch() / "target.reg";
    const auto expectRefused = [](const char* what)
    {
        LocateHives();
        EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_ACCESS_DENIED) << what;
    };
    fs::create_directory(users);
    ASSERT_EQ(::chown(users.c_str(), other, other), 0);
    Put("QUENLOR_REGISTRY_DIR", users.c_str());
    expectRefused("a folder of another account");
    Put("QUENLOR_REGISTRY_DIR", (users / "missing/too").c_str());
    expectRefused("a missing folder below it");
    EXPECT_TRUE(fs::is_empty(users));

    WriteFile(target, Header);
    const fs::path own = Scratch() / "own";
    fs::create_directory(own);
    fs::create_symlink(target, own / "HKEY_CURRENT_USER.reg");
    ASSERT_EQ(::lchown((own / "HKEY_CURRENT_USER.reg").c_str(), other, other), 0);
    Put("QUENLOR_REGISTRY_DIR", own.c_str());
    expectRefused("a link of another account");
    EXPECT_EQ(ReadFile(target), Header);

    fs::permissions(Scratch(), fs::perms{0711});
    Put("QUENLOR_REGISTRY_DIR", users.c_str());
    LocateHives();
    const OrdinaryUser user{Scratch()};
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS) << "the owner is not locked out by what root tried";
}

TEST_F(HiveTest, SkippedTextGoesToNoFileWithASecondName)
{
    WriteFile(UserHive(), Header + "bad\n");
    WriteFile(Scratch() / "passwords", "");
    fs::create_hard_link(Scratch() / "passwords", With(UserHive(), ".skipped"));
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_ACCESS_DENIED);
    EXPECT_EQ(ReadFile(Scratch() / "passwords"), "");
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
        LocateHives();
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
    EXPECT_TRUE(fs::is_empty(Scratch()));
}
} // namespace
