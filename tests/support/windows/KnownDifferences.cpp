#include "support/KnownDifferences.h"

#include <filesystem>
#include <string>

#include <Platform/Win32.h>
#include <gtest/gtest.h>

namespace
{
bool IsWine()
{
    const HMODULE system = ::GetModuleHandleA("ntdll.dll");
    return system && ::GetProcAddress(system, "wine_get_version");
}

bool MakesKey(const char* path, HKEY lookedForIn, const char* lookedFor)
{
    HKEY key = nullptr;
    ::RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    ::RegCloseKey(key);
    key = nullptr;
    const bool isFound = ::RegOpenKeyExA(lookedForIn, lookedFor, 0, KEY_READ, &key) == ERROR_SUCCESS;
    ::RegCloseKey(key);
    ::RegDeleteTreeA(HKEY_CURRENT_USER, path);
    return isFound;
}

bool MakesLongKeys()
{
    const std::string name(256, 'n');
    return MakesKey(name.c_str(), HKEY_CURRENT_USER, name.c_str());
}

bool HidesTheUsersClasses()
{
    return !MakesKey(R"(Software\Classes\Probe)", HKEY_CLASSES_ROOT, "Probe");
}

/// A new file for a probe. Tests that run at the same time each have their own.
std::wstring MakeFile(const char* name, DWORD attributes)
{
    const std::string ofThisProcess = name + std::to_string(::GetCurrentProcessId());
    const std::wstring file = std::filesystem::temp_directory_path() / ofThisProcess;
    ::CloseHandle(::CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, attributes, nullptr));
    return file;
}

void RemoveFile(const std::wstring& file)
{
    ::SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    ::DeleteFileW(file.c_str());
}

bool ReplacesReadOnlyFiles()
{
    const std::wstring kept = MakeFile("kept probe ", FILE_ATTRIBUTE_READONLY);
    const std::wstring other = MakeFile("other probe ", FILE_ATTRIBUTE_NORMAL);
    const bool isReplaced = ::MoveFileExW(other.c_str(), kept.c_str(), MOVEFILE_REPLACE_EXISTING);
    RemoveFile(kept);
    RemoveFile(other);
    return isReplaced;
}

bool WritesReadOnlyFiles()
{
    const std::wstring file = MakeFile("written probe ", FILE_ATTRIBUTE_READONLY);
    const HANDLE again = ::CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const bool isWritten = again != INVALID_HANDLE_VALUE;
    if (isWritten)
        ::CloseHandle(again);
    RemoveFile(file);
    return isWritten;
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
    {"ReturnCodes", "open: no result", "writes through the null pointer", IsWine},
    {"ReturnCodes", "create: no result", "writes through the null pointer", IsWine},
    {"ReturnCodes", "create: too long a name", "creates the key", MakesLongKeys},
    {"ShowsTheUsersItemsThenTheMachines", "", "shows only the classes of the machine", HidesTheUsersClasses},
    {"ChangesTheUsersCopyIfThereIsOne", "", "shows only the classes of the machine", HidesTheUsersClasses},
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
