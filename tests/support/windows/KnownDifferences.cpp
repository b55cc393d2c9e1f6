#include "support/KnownDifferences.h"

#include <Platform/Win32.h>
#include <gtest/gtest.h>

namespace
{
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
