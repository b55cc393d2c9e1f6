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

struct Difference
{
    std::string_view test;
    std::string_view row;
    const char* answer;
};

// Real Windows answers as the tests say.
constexpr Difference OfWine[] = {
    {"ReturnCodes", "open: no result", "writes through the null pointer"},
    {"ReturnCodes", "create: no result", "writes through the null pointer"},
    {"ReturnCodes", "create: too long a name", "creates the key"},
    {"IsWhatTheProcessSet", "", "takes the process of any real handle for unaware"},
    {"ShowsTheUsersItemsThenTheMachines", "", "shows only the classes of the machine"},
    {"ChangesTheUsersCopyIfThereIsOne", "", "shows only the classes of the machine"},
    {"GetTheSameAnswersWhenAllAskAtOnce", "changed variables", "reads the environment without a lock"},
    {"LeaveNoCopyAndNoHandle", "read-only", "replaces the file, as root"},
    {"LeaveNoCopyAndNoHandle", "sealed", "makes the file, as root"},
    {"AreCountedInTheLogLater", "read-only", "writes the file, as root"},
    {"AreCountedInTheLogLater", "sealed", "makes the file, as root"},
};
} // namespace

const char* KnownDifference(std::string_view row)
{
    const std::string_view test = ::testing::UnitTest::GetInstance()->current_test_info()->name();
    for (const Difference& difference : OfWine)
    {
        if (test == difference.test && row == difference.row && IsWine())
            return difference.answer;
    }
    return nullptr;
}
