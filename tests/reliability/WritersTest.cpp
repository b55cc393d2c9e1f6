#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <csignal>
#include <filesystem>
#include <random>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "RegistryHelper.h"
#include "registry/Hives.h"
#include "reliability/Attacks.h"
#include "support/ScratchMachine.h"

// Processes that write to one hive, and many that read it, killed at random moments. FRAXO_WRITERS, FRAXO_READERS and
// FRAXO_KILL_ROUNDS say how many and how often.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor::StandIn::Registry;

/// What the processes share.
struct Shared
{
    std::atomic<int> written[64]; ///< The last number of each writer that was reported as stored.
    std::atomic<std::size_t> reads, torn, outdated;

    static std::string KeyOf(int writer) { return "Shared\\" + std::to_string(writer); }
};

bool IsStored(int writer, int number)
{
    return RegistryHelper::GetIntValue(HKEY_CURRENT_USER, Shared::KeyOf(writer), std::to_string(number), 0) == number;
}

/// Ends only when a write fails.
void Write(Shared& shared, int writer)
{
    const std::string key = Shared::KeyOf(writer);
    for (int number = 1; RegistryHelper::SetIntValue(HKEY_CURRENT_USER, key, std::to_string(number), number); ++number)
        shared.written[writer] = number;
}

/// Looks at what each writer has stored last, and at the hive as a whole.
[[noreturn]] void Read(Shared& shared, int writers)
{
    for (int writer = 0;; writer = (writer + 1) % writers)
    {
        const int number = shared.written[writer];
        shared.outdated += number != 0 && !IsStored(writer, number);
        std::vector<RegistryFileProblem> problems;
        shared.torn += HiveProblems(HKEY_CURRENT_USER, problems) != ERROR_SUCCESS || !problems.empty();
        ++shared.reads;
    }
}

TEST(Writers, LoseNothingToEachOtherNorWhenTheyAreKilled)
{
    const ScratchMachine machine;
    void* const memory = ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    Shared& shared = *new (memory) Shared{};
    const int writers = std::min(CountFrom("FRAXO_WRITERS", 8), 64), readers = CountFrom("FRAXO_READERS", 3);
    const int rounds = CountFrom("FRAXO_KILL_ROUNDS", 50);
    const std::string filler(20'000, 'x'); // makes the writing of the file a larger part of the time
    std::mt19937 random{22};
    std::size_t writes = 0, lost = 0, torn = 0, left = 0;
    for (int round = 0; round < rounds; ++round)
    {
        ::RegDeleteTreeA(HKEY_CURRENT_USER, "Shared");
        machine.WriteText(HKEY_CURRENT_USER, "Shared", "filler", filler);
        std::fill_n(shared.written, writers, 0);
        std::vector<pid_t> processes;
        for (int i = 0; i < writers + readers; ++i)
        {
            if (processes.push_back(::fork()); processes.back() != 0)
                continue;
            ::prctl(PR_SET_PDEATHSIG, SIGKILL); // no process outlives a test that is ended
            ::_exit([&]() noexcept { return i < writers ? Write(shared, i) : Read(shared, writers), 0; }());
        }
        for (int i = 0; i < 10'000 && std::count(shared.written, shared.written + writers, 0) == writers; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds{1});
        std::this_thread::sleep_for(std::chrono::microseconds{random() % 50'000});
        for (const pid_t process : processes)
            EXPECT_EQ(::kill(process, SIGKILL), 0);
        for (const pid_t process : processes)
        {
            int status = 0;
            ::waitpid(process, &status, 0);
            EXPECT_EQ(status, SIGKILL) << "a write has failed";
        }

        for (int writer = 0; writer < writers; ++writer)
        {
            for (int number = shared.written[writer]; number > 0; --number, ++writes)
                lost += !IsStored(writer, number);
        }
        torn += RegistryHelper::GetStringValue(HKEY_CURRENT_USER, "Shared", "filler", "") != filler;
        EXPECT_TRUE(RegistryHelper::SetIntValue(HKEY_CURRENT_USER, "Shared", "next", 1)) << "no lock is held";
        left += CountAndAgeTemporaryFiles(machine.Root() / "Registry");
    }
    EXPECT_FALSE(exists(machine.Root() / "Registry" / "HKEY_CURRENT_USER.reg.skipped"));
    Conclude("killed writers and readers",
             {{"rounds", rounds}, {"acknowledged writes", writes}, {"reads", shared.reads}},
             {{"lost", lost},
              {"torn", torn},
              {"torn reads", shared.torn},
              {"outdated reads", shared.outdated},
              {"files left over", left}});
}
} // namespace
