#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "registry/Hives.h"
#include "standin/ScratchRegistry.h"

// Several processes at one hive. FRAXO_PROCESS_WRITES and FRAXO_KILL_ROUNDS make the tests longer.

namespace
{
using namespace Quenlor::StandIn::Registry;

int CountFrom(const char* variable, int usual)
{
    const char* const text = std::getenv(variable);
    return text ? std::atoi(text) : usual;
}

/// Runs `body` in a process of its own, which ends with what it returns.
pid_t Start(const std::function<int()>& body)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body());
    return child;
}

int ExitCode(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR)
    {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class HiveProcessesTest : public ScratchRegistry
{
protected:
    static std::size_t ProblemCount()
    {
        std::vector<RegistryFileProblem> problems;
        EXPECT_EQ(HiveProblems(HKEY_CURRENT_USER, problems), ERROR_SUCCESS);
        return problems.size();
    }
};

TEST_F(HiveProcessesTest, NoWriteOfEightProcessesIsLost)
{
    constexpr int processes = 8;
    const int writes = CountFrom("FRAXO_PROCESS_WRITES", 50);
    const auto name = [](int process, int write) { return std::to_string(process) + '.' + std::to_string(write); };
    std::vector<pid_t> children;
    for (int process = 0; process < processes; ++process)
    {
        children.push_back(Start(
            [&]
            {
                for (int write = 0; write < writes; ++write)
                {
                    const std::string value = name(process, write);
                    DWORD number = 0;
                    if (SetNumber(HKEY_CURRENT_USER, "Shared", value.c_str(), static_cast<DWORD>(write)) !=
                        ERROR_SUCCESS)
                        return 1;
                    if (GetNumber(HKEY_CURRENT_USER, "Shared", value.c_str(), number) != ERROR_SUCCESS)
                        return 2;
                }
                return 0;
            }));
    }
    for (const pid_t child : children)
        EXPECT_EQ(ExitCode(child), 0);
    for (int process = 0; process < processes; ++process)
    {
        for (int write = 0; write < writes; ++write)
        {
            DWORD number = 0;
            EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "Shared", name(process, write).c_str(), number), ERROR_SUCCESS);
            EXPECT_EQ(number, static_cast<DWORD>(write));
        }
    }
}

TEST_F(HiveProcessesTest, AReaderNeverSeesAnOlderStateThanTheWriterHasReported)
{
    int reports[2];
    ASSERT_EQ(::pipe(reports), 0);
    ASSERT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "n", 0), ERROR_SUCCESS);
    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, "Key", 0, KEY_READ, &key), ERROR_SUCCESS);
    const pid_t writer = Start(
        [&]
        {
            for (DWORD i = 1; i <= 100; ++i)
            {
                if (SetNumber(HKEY_CURRENT_USER, "Key", "n", i) != ERROR_SUCCESS ||
                    ::write(reports[1], &i, sizeof i) != sizeof i)
                    return 1;
            }
            return 0;
        });
    ::close(reports[1]);
    DWORD reported = 0;
    while (::read(reports[0], &reported, sizeof reported) == sizeof reported)
    {
        DWORD number = 0;
        ASSERT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
        ASSERT_GE(number, reported);
    }
    ::close(reports[0]);
    EXPECT_EQ(ExitCode(writer), 0);
    EXPECT_EQ(reported, 100U);
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(HiveProcessesTest, AKilledWriterLeavesAWholeHiveWithAllThatItReported)
{
    std::mt19937 random{22};
    const std::string filler(20000, 'x'); // makes the writing of the file a larger part of the time
    ASSERT_EQ(ChangeHive(HKEY_CURRENT_USER,
                         [&](Key& root) { return root.SetValue("filler", REG_BINARY, filler), ERROR_SUCCESS; }),
              ERROR_SUCCESS);
    DWORD next = 1;
    for (int round = CountFrom("FRAXO_KILL_ROUNDS", 25); round > 0; --round)
    {
        int reports[2];
        ASSERT_EQ(::pipe(reports), 0);
        const pid_t writer = Start(
            [&]() -> int
            {
                for (DWORD i = next;; ++i)
                {
                    if (SetNumber(HKEY_CURRENT_USER, "Key", "n", i) != ERROR_SUCCESS ||
                        ::write(reports[1], &i, sizeof i) != sizeof i)
                        return 1;
                }
            });
        ::close(reports[1]);
        DWORD reported = 0;
        ASSERT_EQ(::read(reports[0], &reported, sizeof reported), static_cast<ssize_t>(sizeof reported));
        std::this_thread::sleep_for(std::chrono::microseconds{random() % 20000});
        ASSERT_EQ(::kill(writer, SIGKILL), 0);
        EXPECT_EQ(ExitCode(writer), -1);
        while (::read(reports[0], &reported, sizeof reported) == sizeof reported)
        {
        }
        ::close(reports[0]);

        DWORD number = 0;
        ASSERT_EQ(GetNumber(HKEY_CURRENT_USER, "Key", "n", number), ERROR_SUCCESS);
        EXPECT_GE(number, reported);
        EXPECT_LE(number, reported + 1) << "at most the write that the signal came into";
        DWORD size = 0;
        EXPECT_EQ(::RegQueryValueExA(HKEY_CURRENT_USER, "filler", nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
        EXPECT_EQ(size, filler.size());
        EXPECT_EQ(ProblemCount(), 0U);

        EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "Key", "round", static_cast<DWORD>(round)), ERROR_SUCCESS);
        EXPECT_FALSE(std::filesystem::exists(With(UserHive(), ".new")));
        EXPECT_FALSE(std::filesystem::exists(With(UserHive(), ".skipped")));
        next = number + 1;
    }
}
} // namespace
