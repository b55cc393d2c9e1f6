#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <csignal>
#include <filesystem>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "RegistryHelper.h"
#include "registry/Hives.h"
#include "reliability/Attacks.h"
#include "reliability/FailingCalls.h"
#include "support/ScratchMachine.h"

// Processes that write to one hive: killed at random moments, and many together with many that read it.
// FRAXO_KILL_ROUNDS, FRAXO_WRITERS, FRAXO_WRITES and FRAXO_READERS say how many.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor::StandIn::Registry;

/// What the processes share.
struct Shared
{
    std::atomic<int> written[64]; ///< The last number of each writer that was reported as stored.
    std::atomic<bool> isOver;
    std::atomic<std::size_t> reads, torn, outdated;
};

class WritersTest : public ::testing::Test
{
protected:
    static std::vector<pid_t> StartAll(int count, const std::function<void(int)>& body)
    {
        std::vector<pid_t> processes;
        for (int i = 0; i < count; ++i)
        {
            if (processes.push_back(::fork()); processes.back() == 0)
                ::_exit([&]() noexcept { return body(i), 0; }()); // an exception must not go on with the parent's tests
        }
        return processes;
    }

    /// @param end 0, or the signal that each must have ended with
    static void ExpectEnd(const std::vector<pid_t>& processes, int end)
    {
        for (const pid_t process : processes)
        {
            int status = 0;
            ::waitpid(process, &status, 0);
            EXPECT_EQ(status, end);
        }
    }

    static std::string Name(int writer, int write) { return std::to_string(writer) + '.' + std::to_string(write); }

    static bool IsStored(int writer, int write)
    {
        return RegistryHelper::GetIntValue(HKEY_CURRENT_USER, "Shared", Name(writer, write), 0) == write;
    }

    /// Ends early when a write fails.
    void Write(int writer, int writes)
    {
        for (int write = 1; write <= writes; ++write)
        {
            if (!RegistryHelper::SetIntValue(HKEY_CURRENT_USER, "Shared", Name(writer, write), write))
                return;
            m_shared->written[writer] = write;
        }
    }

    /// Looks at what each writer has stored last, and at the hive as a whole.
    void Read(int writers)
    {
        std::size_t most = 1;
        for (int writer = 0; !m_shared->isOver; writer = (writer + 1) % writers)
        {
            const int write = m_shared->written[writer];
            m_shared->outdated += write != 0 && !IsStored(writer, write);

            std::size_t values = 0;
            ReadHive(HKEY_CURRENT_USER, [&](const Key& root) { values = root.Find("Shared")->Values().size(); });
            std::vector<RegistryFileProblem> problems;
            HiveProblems(HKEY_CURRENT_USER, problems);
            m_shared->torn += !problems.empty() || values < most;
            most = std::max(values, most);
            ++m_shared->reads;
        }
    }

    /// @return how many of the writes that were reported are missing
    std::size_t Lost(int writers) const
    {
        std::size_t lost = 0;
        for (int writer = 0; writer < writers; ++writer)
        {
            for (int write = m_shared->written[writer]; write > 0; --write)
                lost += !IsStored(writer, write);
        }
        return lost;
    }

    const ScratchMachine m_machine;
    Shared* const m_shared = static_cast<Shared*>(
        ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)); // all 0
};

TEST_F(WritersTest, LoseNothingWhenTheyAreKilled)
{
    FailingCalls::Begin({}), FailingCalls::End(); // a process that is killed while it waits for the disk shows nothing
    constexpr int writers = 3;
    const std::string filler(20'000, 'x'); // makes the writing of the file a larger part of the time
    const int rounds = CountFrom("FRAXO_KILL_ROUNDS", 100);
    std::mt19937 random{22};
    int writes = 0;
    std::size_t lost = 0, torn = 0, left = 0;
    for (int round = 0; round < rounds; ++round)
    {
        ::RegDeleteTreeA(HKEY_CURRENT_USER, "Shared");
        m_machine.WriteText(HKEY_CURRENT_USER, "Shared", "filler", filler);
        std::fill_n(m_shared->written, writers, 0);
        const std::vector<pid_t> processes = StartAll(writers, [this](int writer) { Write(writer, INT_MAX); });
        while (std::count(m_shared->written, m_shared->written + writers, 0) == writers)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::microseconds{random() % 10'000});
        for (const pid_t process : processes)
            EXPECT_EQ(::kill(process, SIGKILL), 0);
        ExpectEnd(processes, SIGKILL);

        lost += Lost(writers);
        writes = std::accumulate(m_shared->written, m_shared->written + writers, writes);
        torn += RegistryHelper::GetStringValue(HKEY_CURRENT_USER, "Shared", "filler", "") != filler;
        EXPECT_TRUE(RegistryHelper::SetIntValue(HKEY_CURRENT_USER, "Shared", "next", 1)) << "no lock is held";
        left += CountAndAgeTemporaryFiles(m_machine.Root() / "Registry");
    }
    EXPECT_FALSE(exists(m_machine.Root() / "Registry" / "HKEY_CURRENT_USER.reg.skipped"));
    Conclude("killed writers", {{"rounds", rounds}, {"acknowledged writes", writes}},
             {{"lost", lost}, {"torn", torn}, {"files left over", left}});
}

TEST_F(WritersTest, LoseNothingToEachOtherAndShowWholeHives)
{
    const int writers = std::min(CountFrom("FRAXO_WRITERS", 32), 64), writes = CountFrom("FRAXO_WRITES", 10);
    m_machine.WriteNumber(HKEY_CURRENT_USER, "Shared", "first", 1);
    const auto readers = StartAll(CountFrom("FRAXO_READERS", 8), [&](int) { Read(writers); });
    ExpectEnd(StartAll(writers, [&](int writer) { Write(writer, writes); }), 0);
    m_shared->isOver = true;
    ExpectEnd(readers, 0);

    EXPECT_EQ(std::count(m_shared->written, m_shared->written + writers, writes), writers) << "writes have failed";
    EXPECT_GT(m_shared->reads, 0U);
    Conclude("many writers and readers",
             {{"writers", writers}, {"writes", writers * writes}, {"reads", m_shared->reads}},
             {{"lost", Lost(writers)}, {"torn reads", m_shared->torn}, {"outdated reads", m_shared->outdated}});
}
} // namespace
