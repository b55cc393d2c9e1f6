#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "RegistryHelper.h"
#include "registry/Hive.h"
#include "registry/Hives.h"
#include "registry/RegistryKey.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::StandIn::Registry;
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;
using ::testing::AllOf;
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

    static LSTATUS Set(HKEY root, DWORD number, const std::string& name = "n", const std::string& path = "Key")
    {
        HKEY key = nullptr;
        LSTATUS status = ::RegCreateKeyExA(root, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
        const RegistryKey closer{key};
        if (status == ERROR_SUCCESS)
            status = ::RegSetValueExA(key, name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), 4);
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

    /// From now on the hives are in this folder.
    void MoveTo(const fs::path& folder)
    {
        m_machine.SetEnvironment("QUENLOR_REGISTRY_DIR", folder);
        LocateHives();
    }

    ScratchMachine m_machine;
    const fs::path m_folder = m_machine.Root() / "Registry";
    const fs::path m_user = m_folder / "HKEY_CURRENT_USER.reg";
    const fs::path m_machines = m_folder / "HKEY_LOCAL_MACHINE.reg";
};

TEST_F(HiveTest, ShowsChangesOfOtherPrograms)
{
    Hive other{HKEY_CURRENT_USER, m_user}; // shares nothing with the functions but the files
    const auto setByOther = [&other](DWORD number)
    {
        const std::string_view data{reinterpret_cast<const char*>(&number), sizeof number};
        return other.Change([&](Key& root)
                            { return root.Create("key").SetValue("n", REG_DWORD, data), ERROR_SUCCESS; });
    };
    ASSERT_EQ(Set(HKEY_CURRENT_USER, 1, "mine"), ERROR_SUCCESS);
    RegistryKey key;
    ASSERT_EQ(Open(HKEY_CURRENT_USER, KEY_READ, key), ERROR_SUCCESS);
    DWORD number = None;
    for (DWORD i = 0; i < 100; ++i) // each version has the same size, many are written in the same tick of the clock
    {
        ASSERT_EQ(setByOther(i), ERROR_SUCCESS);
        ASSERT_EQ(Get(HKEY_CURRENT_USER), i);
    }
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 2, "mine"), ERROR_SUCCESS);
    EXPECT_EQ(Get(key, number), ERROR_SUCCESS) << "on top of the other's change";

    fs::last_write_time(m_user,
                        fs::file_time_type::clock::now() + std::chrono::hours{1}); // then the clock was set back
    const fs::file_time_type before = fs::last_write_time(m_user);
    EXPECT_EQ(setByOther(4712), ERROR_SUCCESS);
    EXPECT_GT(fs::last_write_time(m_user), before) << "or one version may look like another";
    while (number != 4712) // a key that is open already notices within some ticks of the coarse clock
        ASSERT_EQ(Get(key, number), ERROR_SUCCESS);
    EXPECT_EQ(other.Change([](Key& root) { return root.Clear(), ERROR_SUCCESS; }), ERROR_SUCCESS);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), None);
    EXPECT_EQ(Get(key, number), ERROR_KEY_DELETED);
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS);
    EXPECT_EQ(Get(key, number), ERROR_KEY_DELETED) << "another key of that name";
}

TEST_F(HiveTest, MalformedLinesAreSavedBeforeAWrite)
{
    const std::string original = Header + "\"bad\"=dword:x\n[HKEY_LOCAL_MACHINE\\Foreign]\n\"f\"=\"x\"\n"
                                          "[HKEY_CURRENT_USER\\Key]\n\"n\"=dword:1\n";
    const fs::path saved = With(m_user, ".skipped");
    WriteFile(m_user, original);
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
    EXPECT_THAT(ReadFile(saved), AllOf(StartsWith(skipped), HasSubstr("\nmore\n")));
}

TEST_F(HiveTest, NamesThatNoFileCanHoldAreRefused)
{
    const std::string tooLong(256, 'n');
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1, "n", tooLong.substr(1)), ERROR_SUCCESS);
    for (const std::string& path : {tooLong, std::string{"a\nb"}})
        EXPECT_EQ(Set(HKEY_CURRENT_USER, 1, "n", path), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1, "a\rb"), ERROR_INVALID_PARAMETER);
}

TEST_F(HiveTest, OneThatIsProtectedIsLeftAlone)
{
    WriteFile(m_machines, "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Key]\n\"n\"=dword:1\n\"t\"=\"5\"\n");
    fs::permissions(m_folder, fs::perms::all);
    for (const unsigned mode : {0U, 0444U, 0666U}) // the last is protected only by the owner of its folder
    {
        fs::permissions(m_machines, fs::perms{mode});
        const OrdinaryUser user{m_machine.Root()};
        RegistryKey key;
        EXPECT_EQ(Get(HKEY_LOCAL_MACHINE), mode != 0 ? 1 : None);
        EXPECT_EQ(Open(HKEY_LOCAL_MACHINE, KEY_WRITE, key), ERROR_ACCESS_DENIED);
        EXPECT_EQ(Set(HKEY_LOCAL_MACHINE, 1), ERROR_ACCESS_DENIED);
        EXPECT_EQ(RegistryHelper::GetIntValue(HKEY_LOCAL_MACHINE, "Key", "t", 7), 7) << "text that cannot be converted";
    }
}

TEST_F(HiveTest, OtherFilesAreAnErrorAndNeverReplaced)
{
    fs::create_directories(m_folder);
    const std::pair<LSTATUS, void (*)(const fs::path&)> others[] = {
        {ERROR_REGISTRY_IO_FAILED, [](const fs::path& path) { fs::create_directory(path); }},
        {ERROR_REGISTRY_IO_FAILED, [](const fs::path& path) { ::mkfifo(path.c_str(), 0600); }},
        {ERROR_BADDB, [](const fs::path& path) { WriteFile(path, "user:secret\n"); }},
    };
    for (const auto& [error, make] : others)
    {
        make(m_user);
        const auto type = fs::status(m_user).type();
        RegistryKey key;
        EXPECT_EQ(Open(HKEY_CURRENT_USER, KEY_READ, key), error);
        EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), error);
        EXPECT_EQ(fs::status(m_user).type(), type);
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
        MoveTo(lure);
        EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_ACCESS_DENIED) << lure;
    }
    EXPECT_TRUE(fs::is_empty(users));
    EXPECT_EQ(ReadFile(target), Header);

    MoveTo(users);
    const OrdinaryUser user{m_machine.Root()};
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS) << "the owner is not locked out by what root tried";
}

TEST_F(HiveTest, NeverReplacesWhatWasWrittenWithoutItsLock)
{
    ASSERT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_SUCCESS);
    const auto race = [this](Key&) { return WriteFile(m_user, Header), ERROR_SUCCESS; };
    EXPECT_EQ(ChangeHive(HKEY_CURRENT_USER, race), ERROR_REGISTRY_IO_FAILED);
    EXPECT_EQ(ReadFile(m_user), Header);
    EXPECT_EQ(Get(HKEY_CURRENT_USER), None);
}

TEST_F(HiveTest, ALinkIsWrittenThrough)
{
    const fs::path target = m_machine.Root() / "elsewhere/target.reg";
    fs::create_directories(target.parent_path());
    fs::create_directories(m_folder);
    fs::create_symlink("../elsewhere/target.reg", m_user);
    for (const DWORD written : {1U, 2U}) // first it leads nowhere
    {
        EXPECT_EQ(Set(HKEY_CURRENT_USER, written), ERROR_SUCCESS);
        EXPECT_EQ(Get(HKEY_CURRENT_USER), written);
        EXPECT_TRUE(fs::is_symlink(m_user));
        EXPECT_TRUE(fs::exists(With(target, ".lock"))) << "one lock for all that lead to this file";
    }
}

TEST_F(HiveTest, FilesHaveTheirModeWhateverTheUmask)
{
    EXPECT_EQ(Get(HKEY_CURRENT_USER), None);
    EXPECT_FALSE(fs::exists(m_folder)) << "reading creates nothing";
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
    WriteFile(m_machines, ""); // an empty hive
    fs::permissions(m_machines, fs::perms{0640});
    EXPECT_EQ(Set(HKEY_LOCAL_MACHINE, 1), ERROR_SUCCESS);
    EXPECT_EQ(Mode(m_machines), 0640U) << "chosen by the administrator";
}

TEST_F(HiveTest, TheEnvironmentSaysWhereTheyAre)
{
    const struct
    {
        const char* registryDir;
        const char* configHome;
        const char* home;
        std::string machine;
        std::string user;
    } places[] = {
        {"/r", "/c", "/h", "/r", "/r/HKEY_CURRENT_USER.reg"},
        {"", "/c", "/h", "/var/lib/quenlor/registry", "/c/quenlor/registry/HKEY_CURRENT_USER.reg"},
        {"r", "c", "/h", "/var/lib/quenlor/registry", "/h/.config/quenlor/registry/HKEY_CURRENT_USER.reg"},
        {"", "", "h", "/var/lib/quenlor/registry", ""},
    };
    for (const auto& place : places)
    {
        m_machine.SetEnvironment("XDG_CONFIG_HOME", place.configHome);
        m_machine.SetEnvironment("HOME", place.home);
        MoveTo(place.registryDir);
        EXPECT_EQ(HivePath(HKEY_LOCAL_MACHINE), place.machine + "/HKEY_LOCAL_MACHINE.reg");
        EXPECT_EQ(HivePath(HKEY_CURRENT_USER), place.user);
    }
    fs::current_path(m_machine.Root()); // where nothing may be created without a place
    EXPECT_EQ(Set(HKEY_CURRENT_USER, 1), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(fs::exists("HKEY_CURRENT_USER.reg"));
}
} // namespace
