#include "support/KnownDifferences.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <Platform/Win32.h>
#include <gtest/gtest.h>

namespace
{
namespace fs = std::filesystem;

bool IsWine()
{
    const HMODULE system = ::GetModuleHandleA("ntdll.dll");
    return system && ::GetProcAddress(system, "wine_get_version");
}

bool HidesTheUsersClasses()
{
    HKEY users = nullptr, shown = nullptr;
    ::RegCreateKeyExA(HKEY_CURRENT_USER, R"(Software\Classes\Probe)", 0, nullptr, 0, KEY_READ, nullptr, &users,
                      nullptr);
    const bool isHidden = ::RegOpenKeyExA(HKEY_CLASSES_ROOT, "Probe", 0, KEY_READ, &shown) != ERROR_SUCCESS;
    ::RegCloseKey(shown);
    ::RegCloseKey(users);
    ::RegDeleteTreeA(HKEY_CURRENT_USER, R"(Software\Classes\Probe)");
    return isHidden;
}

/// @return whether `probe` can do with a read-only file what Windows refuses
bool DespiteReadOnly(bool (*probe)(const fs::path& file))
{
    // Tests that run at the same time each have their own.
    const fs::path file = fs::temp_directory_path() / ("probe " + std::to_string(::GetCurrentProcessId()));
    std::ofstream{file};
    fs::permissions(file, fs::perms::owner_read);
    const bool isDone = probe(file);
    fs::permissions(file, fs::perms::all);
    fs::remove(file);
    return isDone;
}

bool ReplacesReadOnlyFiles()
{
    const auto replace = [](const fs::path& file)
    {
        const fs::path other = file.string() + " other";
        std::ofstream{other};
        const bool isReplaced = ::MoveFileExW(other.c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING);
        fs::remove(other);
        return isReplaced;
    };
    return DespiteReadOnly(replace);
}

bool WritesReadOnlyFiles()
{
    return DespiteReadOnly([](const fs::path& file) { return std::ofstream{file, std::ios::app}.is_open(); });
}

struct Difference
{
    std::string_view test;
    std::string_view row;
    const char* answer;
    bool (*isThere)(); ///< Asks the system where that is possible without a crash.
};

// Real Windows answers as the tests say.
constexpr Difference OfWine[] = {
    {"PrefersTheUsersItems", "", "shows only the classes of the machine", HidesTheUsersClasses},
    {"GetTheSameAnswersWhenAllAskAtOnce", "changed variables", "reads the environment without a lock", IsWine},
    {"LeaveNoCopyAndNoHandle", "read-only", "replaces the file, as root", ReplacesReadOnlyFiles},
    {"LeaveNoCopyAndNoHandle", "sealed", "makes the file, as root", WritesReadOnlyFiles},
    {"AreCountedInTheLogLater", "read-only", "writes the file, as root", WritesReadOnlyFiles},
    {"AreCountedInTheLogLater", "sealed", "makes the file, as root", WritesReadOnlyFiles},
};
} // namespace

const char* KnownDifference(std::string_view row)
{
    const std::string_view test = ::testing::UnitTest::GetInstance()->current_test_info()->name();
    for (const Difference& difference : OfWine)
    {
        if (test == difference.test && row == difference.row && difference.isThere())
            return difference.answer;
    }
    return nullptr;
}
