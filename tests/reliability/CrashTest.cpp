#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "RegistryHelper.h"
#include "reliability/FailingCalls.h"
#include "reliability/Processes.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// Processes that are killed at random moments. FRAXO_KILL_ROUNDS says how often.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;

/// Stores 1, then 2 and so on until it is killed.
struct Writer
{
    std::string name;
    int stored = 0;
    pid_t process = 0;
    int reports[2] = {};
};

TEST(CrashTest, AWriterLeavesAWholeHive)
{
    FailingCalls::Begin({}); // what is killed while it waits for the disk tells nothing new
    const ScratchMachine machine;
    const std::string filler(20'000, 'x'); // makes the writing of the file a larger part of the time
    machine.WriteText(HKEY_CURRENT_USER, "Key", "filler", filler);
    const fs::path hive = machine.Root() / "Registry" / "HKEY_CURRENT_USER.reg";
    const auto set = [](const std::string& name, int number)
    { return RegistryHelper::SetIntValue(HKEY_CURRENT_USER, "Key", name, number); };
    const auto get = [](const std::string& name)
    { return RegistryHelper::GetIntValue(HKEY_CURRENT_USER, "Key", name, 0); };

    const int rounds = CountFrom("FRAXO_KILL_ROUNDS", 100);
    std::array<Writer, 3> writers = {Writer{"a"}, Writer{"b"}, Writer{"c"}};
    std::mt19937 random{22};
    std::size_t writes = 0, lost = 0, torn = 0, left = 0;
    for (int round = 0; round < rounds; ++round)
    {
        for (Writer& writer : writers)
        {
            ASSERT_EQ(::pipe(writer.reports), 0);
            const auto storeAll = [&]
            {
                int number = writer.stored + 1;
                while (set(writer.name, number) && ::write(writer.reports[1], &number, sizeof number) > 0)
                    ++number;
                return 1;
            };
            writer.process = Start(storeAll);
            ::close(writer.reports[1]);
        }
        std::this_thread::sleep_for(std::chrono::microseconds{random() % 10'000});
        for (Writer& writer : writers)
        {
            ::kill(writer.process, SIGKILL);
            EXPECT_EQ(ExitCode(writer.process), -1) << "it failed before it was killed";
        }
        for (Writer& writer : writers)
        {
            int reported = writer.stored;
            while (::read(writer.reports[0], &reported, sizeof reported) == sizeof reported)
                ++writes;
            ::close(writer.reports[0]);
            writer.stored = get(writer.name);
            lost += writer.stored < reported;
            torn += writer.stored > reported + 1; // at most what the signal came into
        }
        EXPECT_EQ(RegistryHelper::GetStringValue(HKEY_CURRENT_USER, "Key", "filler", ""), filler);
        EXPECT_TRUE(set("test", get("test") + 1)) << "no lock is held";
        left += TemporaryFiles(hive.parent_path()).size() + exists(fs::path{hive} += ".skipped");
    }
    Conclude("killed writers", {{"rounds", rounds}, {"acknowledged writes", writes}},
             {{"lost", lost}, {"torn", torn}, {"files left behind", left}});
}
} // namespace
