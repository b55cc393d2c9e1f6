#include <chrono>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "registry/Hive.h"
#include "registry/Hives.h"
#include "registry/RegistryKey.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::StandIn::Registry;
using Quenlor::Fraxo::SharedUtilities::Native::RegistryKey;
namespace fs = std::filesystem;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr DWORD None = 4711;
const std::string Header = "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER]\n";

class HiveTest : public ::testing::Test
{
protected:
    static fs::path With(fs::path file, const char* suffix) { return file += suffix; }

    static LSTATUS Open(HKEY root, REGSAM access, RegistryKey& opened)
    {
        HKEY key = root;
        const LSTATUS status = ::RegOpenKeyExA(root, "Key", 0, access, &key);
        EXPECT_EQ(key != nullptr, status == ERROR_SUCCESS);
        opened.reset(key);
        return status;
    }

    static LSTATUS Set(HKEY root, DWORD number, const char* name = "n")
    {
        HKEY key = nullptr;
        LSTATUS status = ::RegCreateKeyExA(root, "Key", 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
        if (status == ERROR_SUCCESS)
            status = ::RegSetValueExA(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
        ::RegCloseKey(key);
        return status;
    }

    static LSTATUS Get(const RegistryKey& key, DWORD& number)
    {
        DWORD size = sizeof number;
        return ::RegQueryValueExA(key.get(), "n", nullptr, nullptr, reinterpret_cast<BYTE*>(&number), &size);
    }

    /// What Set has stored; None if it cannot be read.
    static DWORD Get(HKEY root)
    {
        RegistryKey key;
        DWORD number = None;
        if (Open(root, KEY_READ, key) == ERROR_SUCCESS)
            Get(key, number);
        return number;
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
    const fs::path m_folder = m_machine.Root() / "Registry";
    const fs::path m_user = m_folder / "HKEY_CURRENT_USER.reg";
    const fs::path m_machines = m_folder / "HKEY_LOCAL_MACHINE.reg";
    Hive m_other{HKEY_CURRENT_USER, m_user};
};

TEST_F(HiveTest, ShowsChangesOfOtherPrograms)
{
    ASSERT_EQ(Set(HKEY_CURRENT_USER, 1, "mine"), ERROR_SUCCESS);
    RegistryKey key;
    ASSERT_EQ(Open(HKEY_CURRENT_USER, KEY_READ, key), ERROR_SUCCESS);
    DWORD number = None;
    for (DWORD i = 0; i < 100; ++i) // each version has the same size, many are written in the same tick of the clock
    {
        ASSERT_EQ(SetByOther(i), ERROR_SUCCESS);
        ASSERT_EQ(Get(HKEY_CURRENT_USER), i);
    }
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 2, "mine"), ERROR_SUCCESS);
    EXPECT_EQ(Get(key, number), ERROR_SUCCESS) << "on top of the other's change";

    EXPECT_EQ(SetByOther(4712), ERROR_SUCCESS);
    while (number != 4712) // a key that is open already notices within some ticks of the coarse clock
        ASSERT_EQ(Get(key, number), ERROR_SUCCESS);
    EXPECT_EQ(m_other.Change([](Key& root) { return root.Delete("Key") ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND; }), 0);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), None);
    EXPECT_EQ(Get(key, number), ERROR_KEY_DELETED);
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS);
    EXPECT_EQ(Get(key, number), ERROR_KEY_DELETED) << "another key of that name";
}

TEST_F(HiveTest, EachVersionIsLaterWhateverTheClock)
{
    ASSERT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS);
    fs::last_write_time(m_user, fs::file_time_type::clock::now() + std::chrono::hours{1});
    const fs::file_time_type before = fs::last_write_time(m_user);
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1, "N"), ERROR_SUCCESS);
    EXPECT_EQ(fs::last_write_time(m_user), before) << "an identical value is not written";
    EXPECT_EQ(SetByOther(2), ERROR_SUCCESS);
    EXPECT_GT(fs::last_write_time(m_user), before);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), 2U);
}

TEST_F(HiveTest, MalformedLinesAreSavedBeforeAWrite)
{
    const std::string original = Header + "\"bad\"=dword:x\n[HKEY_LOCAL_MACHINE\\Foreign]\n\"f\"=\"x\"\n"
                                          "[HKEY_CURRENT_USER\\Key]\n\"n\"=dword:1\n";
    const fs::path saved = With(m_user, ".skipped");
    WriteFile(m_user, original);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), 1U);
    std::vector<RegistryFileProblem> problems;
    EXPECT_EQ(HiveProblems(HKEY_CURRENT_USER, problems), ERROR_SUCCESS);
    EXPECT_EQ(problems.size(), 3U);

    fs::create_directory(saved);
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 2), ERROR_REGISTRY_IO_FAILED);
    EXPECT_EQ(ReadFile(m_user), original) << "not before the text is safe";
    fs::remove(saved);

    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1, "m"), ERROR_SUCCESS);
    const std::string skipped = ReadFile(saved);
    EXPECT_THAT(skipped, HasSubstr("; line 4: a dword that is not 1 to 8 hexadecimal digits\n\"bad\"=dword:x\n"));
    EXPECT_THAT(skipped, HasSubstr("\n\"f\"=\"x\"\n"));
    EXPECT_EQ(Mode(saved), 0600U);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), 1U);

    WriteFile(m_user, Header + "more\n"); // is added to what was saved before
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 2), ERROR_SUCCESS);
    EXPECT_THAT(ReadFile(saved), ::testing::AllOf(StartsWith(skipped), EndsWith("a key nor a value\nmore\n")));
}

TEST_F(HiveTest, OneThatIsProtectedIsLeftAlone)
{
    WriteFile(m_machines, "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Key]\n\"n\"=dword:1\n");
    fs::permissions(m_folder, fs::perms::all);
    for (const unsigned mode : {0U, 0444U, 0666U}) // the last is protected only by the owner of its folder
    {
        const bool isReadable = mode != 0;
        fs::permissions(m_machines, fs::perms{mode});
        const OrdinaryUser user{m_machine.Root()};
        RegistryKey key;
        EXPECT_EQ(Get(HKEY_LOCAL_MACHINE), isReadable ? 1 : None);
        EXPECT_EQ(Open(HKEY_LOCAL_MACHINE, isReadable ? KEY_WRITE : KEY_READ, key), ERROR_ACCESS_DENIED);
        EXPECT_EQ(Set(HKEY_LOCAL_MACHINE, 1), ERROR_ACCESS_DENIED);
        EXPECT_EQ(::RegDeleteTreeA(HKEY_LOCAL_MACHINE, "Key"), ERROR_ACCESS_DENIED);
    }
}

// clang-format off
TEST_F(HiveTest, OtherFilesAreAnErrorAndNeverReplaced)
{
    const struct
    {
        const char* name;
        LSTATUS error;
        void (*make)(const fs::path& path);
    } others[] = {
        {"folder", ERROR_REGISTRY_IO_FAILED, [](const fs::path& path) { fs::create_directories(path); }},
        {"pipe", ERROR_REGISTRY_IO_FAILED, [](const fs::path& path) { ::mkfifo(path.c_str(), 0600); }},
        {"device", ERROR_REGISTRY_IO_FAILED, [](const fs::path& path) { fs::create_symlink("/dev/zero", path); }},
        {"file of impossible size", ERROR_REGISTRY_IO_FAILED, [](const fs::path& path) {
            WriteFile(path, "");
            fs::resize_file(path, std::uintmax_t{1} << 40); }},
        {"text", ERROR_BADDB, [](const fs::path& path) { WriteFile(path, "user:secret\n"); }},
    };
    // clang-format on
    for (const auto& [name, error, make] : others)
    {
        SCOPED_TRACE(name);
        make(m_user);
        const auto type = fs::status(m_user).type();
        RegistryKey key;
        EXPECT_EQ(Open(HKEY_CURRENT_USER, KEY_READ, key), error);
        EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), error);
        EXPECT_EQ(fs::status(m_user).type(), type);
        EXPECT_FALSE(fs::exists(With(m_user, ".skipped")));
        fs::remove(m_user);
    }
    for (const char* const suffix : {".lock", ".skipped", ".new"}) // nor does a pipe in their places make a writer wait
    {
        WriteFile(m_user, Header + "bad\n");
        fs::remove(With(m_user, suffix));
        ASSERT_EQ(::mkfifo(With(m_user, suffix).c_str(), 0600), 0);
        const bool isNeeded = std::string_view{suffix} == ".skipped";
        EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), isNeeded ? ERROR_REGISTRY_IO_FAILED : ERROR_SUCCESS) << suffix;
        EXPECT_EQ(ReadFile(m_user) == Header + "bad\n", isNeeded) << suffix;
        fs::remove(With(m_user, suffix));
    }
    const fs::path elsewhere = m_machine.Root() / "passwords"; // reached by a second name
    WriteFile(m_user, Header + "bad\n");
    WriteFile(elsewhere, "");
    fs::remove(With(m_user, ".skipped"));
    fs::create_hard_link(elsewhere, With(m_user, ".skipped"));
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_ACCESS_DENIED);
    EXPECT_EQ(ReadFile(elsewhere), "");
}

TEST_F(HiveTest, OnlyTheOwnerOfTheFolderWrites)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "Only root can be lured.";
    constexpr uid_t other = 65534;
    const fs::path users = m_machine.Root() / "users", own = m_machine.Root() / "own";
    const fs::path target = m_machine.Root() / "target.reg", link = own / "HKEY_CURRENT_USER.reg";
    fs::create_directory(users);
    ASSERT_EQ(::chown(users.c_str(), other, other), 0);
    WriteFile(target, Header);
    fs::create_directory(own);
    fs::create_symlink(target, link);
    ASSERT_EQ(::lchown(link.c_str(), other, other), 0);
    for (const fs::path& lure : {users, users / "missing/too", own})
    {
        m_machine.SetEnvironment("QUENLOR_REGISTRY_DIR", lure);
        LocateHives();
        EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_ACCESS_DENIED) << lure;
    }
    EXPECT_TRUE(fs::is_empty(users));
    EXPECT_EQ(ReadFile(target), Header);

    m_machine.SetEnvironment("QUENLOR_REGISTRY_DIR", users);
    LocateHives();
    const OrdinaryUser user{m_machine.Root()};
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS) << "the owner is not locked out by what root tried";
}

TEST_F(HiveTest, AnEditIsDoneWhollyOrNotAtAll)
{
    ASSERT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS);
    const std::string before = ReadFile(m_user);
    EXPECT_EQ(ChangeHive(HKEY_CURRENT_USER, [](Key& root) { return root.Clear(), ERROR_BADKEY; }), ERROR_BADKEY);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), 1U);
    const auto fail = [](Key& root) -> LSTATUS { throw(root.Clear(), std::runtime_error{"no"}); };
    EXPECT_THROW(ChangeHive(HKEY_CURRENT_USER, fail), std::runtime_error);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), 1U);
    EXPECT_EQ(ReadFile(m_user), before);

    const auto race = [this](Key&) { return WriteFile(m_user, Header), ERROR_SUCCESS; };
    EXPECT_EQ(ChangeHive(HKEY_CURRENT_USER, race), ERROR_REGISTRY_IO_FAILED) << "of a program that knows no lock";
    EXPECT_EQ(ReadFile(m_user), Header);
}

TEST_F(HiveTest, ALinkIsWrittenThrough)
{
    const fs::path target = m_machine.Root() / "elsewhere/target.reg";
    fs::create_directories(target.parent_path());
    fs::create_directories(m_folder);
    fs::create_symlink("../elsewhere/link.reg", m_user);
    fs::create_symlink("target.reg", target.parent_path() / "link.reg");
    for (const DWORD written : {1U, 2U}) // first it leads nowhere
    {
        EXPECT_EQ(Set(HKEY_CURRENT_USER, written), ERROR_SUCCESS);
        EXPECT_EQ(Get(HKEY_CURRENT_USER), written);
        EXPECT_TRUE(fs::is_symlink(m_user));
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(target)));
        EXPECT_TRUE(fs::exists(With(target, ".lock"))) << "one lock for all that lead to this file";
    }
}

TEST_F(HiveTest, FilesHaveTheirModeWhateverTheUmask)
{
    for (const mode_t mask : {mode_t{0}, mode_t{077}})
    {
        for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
        {
            const bool isShared = root == HKEY_LOCAL_MACHINE;
            const fs::path file = isShared ? m_machines : m_user;
            const mode_t old = ::umask(mask);
            EXPECT_EQ(Set(root, 1), ERROR_SUCCESS);
            ::umask(old);
            EXPECT_EQ(Mode(m_folder), isShared ? 0755U : 0700U);
            EXPECT_EQ(Mode(file), isShared ? 0644U : 0600U);
            EXPECT_EQ(Mode(With(file, ".lock")), 0600U) << "who cannot write must not be able to hold up writers";
            fs::remove_all(m_folder);
        }
    }
    WriteFile(m_machines, "");
    fs::permissions(m_machines, fs::perms{0640});
    EXPECT_EQ(Set(HKEY_LOCAL_MACHINE, 1), ERROR_SUCCESS);
    EXPECT_EQ(Mode(m_machines), 0640U) << "chosen by the administrator";
    EXPECT_FALSE(fs::exists(With(m_machines, ".skipped"))) << "an empty file is an empty hive";
}

TEST_F(HiveTest, TheEnvironmentSaysWhereTheyAre)
{
    const std::string machine = "/var/lib/quenlor/registry/HKEY_LOCAL_MACHINE.reg";
    using Variable = std::optional<std::string>;
    const struct
    {
        Variable registryDir;
        Variable configHome;
        Variable home;
        std::string machine;
        std::string user;
    } places[] = {
        {"/r", "/c", "/h", "/r/HKEY_LOCAL_MACHINE.reg", "/r/HKEY_CURRENT_USER.reg"},
        {"", "/c", "/h", machine, "/c/quenlor/registry/HKEY_CURRENT_USER.reg"},
        {"r", "c", "/h", machine, "/h/.config/quenlor/registry/HKEY_CURRENT_USER.reg"},
        {{}, "", "h", machine, ""},
        {{}, {}, {}, machine, ""},
    };
    for (const auto& place : places)
    {
        m_machine.SetEnvironment("QUENLOR_REGISTRY_DIR", place.registryDir);
        m_machine.SetEnvironment("XDG_CONFIG_HOME", place.configHome);
        m_machine.SetEnvironment("HOME", place.home);
        LocateHives();
        EXPECT_EQ(HivePath(HKEY_LOCAL_MACHINE), place.machine);
        EXPECT_EQ(HivePath(HKEY_CURRENT_USER), place.user);
    }

    const fs::path current = m_machine.Root() / "current"; // where nothing may be created without a place
    fs::create_directory(current);
    fs::current_path(current);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), None);
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(fs::is_empty(current));
    fs::current_path("/");
}

TEST_F(HiveTest, ReadingCreatesNothing)
{
    EXPECT_EQ(Get(HKEY_CURRENT_USER), None);
    EXPECT_EQ(Get(HKEY_CLASSES_ROOT), None);
    EXPECT_EQ(::RegDeleteTreeA(HKEY_CURRENT_USER, "Key"), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(fs::exists(m_folder));
}
} // namespace
