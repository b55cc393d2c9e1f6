#include <chrono>
#include <csignal>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "registry/Hives.h"
#include "standin/Processes.h"
#include "standin/ScratchRegistry.h"

// Several processes at one hive. FRAXO_PROCESS_WRITES and FRAXO_KILL_ROUNDS make the tests longer.

namespace
{
using namespace Quenlor::StandIn::Registry;

class HiveProcessesTest : public ScratchRegistry
{
protected:
    /// Starts a process that sets a value to one number after the other and reports each one when it is set.
    static pid_t StartCounting(DWORD first, DWORD last, int& reports)
    {
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        const auto count = [&]
        {
            for (DWORD i = first; i <= last; ++i)
            {
                if (SetNumber(HKEY_CURRENT_USER, "Key", "n", i) != ERROR_SUCCESS ||
                    ::write(ends[1], &i, sizeof i) != sizeof i)
                    return 1;
            }
            return 0;
        };
        const pid_t child = Start(count);
        ::close(ends[1]);
        reports = ends[0];
        return child;
    }
};

TEST_F(HiveProcessesTest, NoWriteOfEightProcessesIsLost)
{
    constexpr int processes = 8;
    const auto writes = static_cast<DWORD>(CountFrom("FRAXO_PROCESS_WRITES", 50));
    const auto name = [](int process, DWORD write) { return std::to_string(process) + '.' + std::to_string(write); };
    std::vector<pid_t> children;
    for (int process = 0; process < processes; ++process)
    {
        const auto writeAll = [&]
        {
            for (DWORD write = 0; write < writes; ++write)
            {
                if (SetNumber(HKEY_CURRENT_USER, "Shared", name(process, write).c_str(), write) != ERROR_SUCCESS)
                    return 1;
            }
            return 0;
        };
        children.push_back(Start(writeAll));
    }
    for (const pid_t child : children)
        EXPECT_EQ(ExitCode(child), 0);
    for (int process = 0; process < processes; ++process)
    {
        for (DWORD write = 0; write < writes; ++write)
        {
            DWORD number = 0;
            EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Shared", name(process, write).c_str(), number), ERROR_SUCCESS);
            EXPECT_EQ(number, write);
        }
    }
}

TEST_F(HiveProcessesTest, AReaderNeverSeesAnOlderStateThanTheWriterHasReported)
{
    ASSERT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 0), ERROR_SUCCESS);
    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, "Key", 0, KEY_READ, &key), ERROR_SUCCESS);
    int reports = 0;
    const pid_t writer = StartCounting(1, 100, reports);
    DWORD reported = 0;
    while (::read(reports, &reported, sizeof reported) == sizeof reported)
    {
        DWORD number = 0;
        ASSERT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
        ASSERT_GE(number, reported);
    }
    ::close(reports);
    EXPECT_EQ(ExitCode(writer), 0);
    EXPECT_EQ(reported, 100U);
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(HiveProcessesTest, AKilledWriterLeavesAWholeHiveWithAllThatItReported)
{
    std::mt19937 random{22};
    const std::string filler(20000, 'x'); // makes the writing of the file a larger part of the time
    const auto fill = [&](Key& root) { return root.SetValue("filler", REG_BINARY, filler), ERROR_SUCCESS; };
    ASSERT_EQ(ChangeHive(HKEY_CURRENT_USER, fill), ERROR_SUCCESS);
    DWORD number = 0;
    for (int round = CountFrom("FRAXO_KILL_ROUNDS", 25); round > 0; --round)
    {
        int reports = 0;
        const pid_t writer = StartCounting(number + 1, number + 1'000'000, reports);
        DWORD reported = 0;
        ASSERT_EQ(::read(reports, &reported, sizeof reported), static_cast<ssize_t>(sizeof reported));
        std::this_thread::sleep_for(std::chrono::microseconds{random() % 20000});
        ASSERT_EQ(::kill(writer, SIGKILL), 0);
        EXPECT_EQ(ExitCode(writer), -1);
        while (::read(reports, &reported, sizeof reported) == sizeof reported)
            continue;
        ::close(reports);

        ASSERT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_SUCCESS);
        EXPECT_LE(number - reported, 1U) << "at most the write that the signal came into";
        DWORD size = 0;
        EXPECT_EQ(::RegQueryValueExA(HKEY_CURRENT_USER, "filler", nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
        EXPECT_EQ(size, filler.size());
        EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "round", static_cast<DWORD>(round)), ERROR_SUCCESS);
        EXPECT_FALSE(std::filesystem::exists(With(UserHive(), ".new")));
        EXPECT_FALSE(std::filesystem::exists(With(UserHive(), ".skipped"))) << "no malformed line";
    }
}
} // namespace
