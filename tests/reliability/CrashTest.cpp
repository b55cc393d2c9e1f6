#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <thread>

#include <Quenlor/QnFileName.h>
#include <gtest/gtest.h>

#include "RegistryHelper.h"
#include "configfiles/UserFile.h"
#include "reliability/FailingCalls.h"
#include "reliability/Processes.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// Processes that are killed at random moments. FRAXO_KILL_ROUNDS says how often.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;

constexpr int Torn = 1'000'000'000;

/// Stores 1, then 2 and so on until it is killed.
struct Writer
{
    std::string name;
    int stored = 0;
    pid_t process = 0;
    int reports[2] = {};
};

struct Work
{
    std::function<bool(const Writer&, int number)> store;
    std::function<int(const Writer&)> find;  ///< The highest number that is stored whole, no less than `stored`.
    std::function<std::size_t()> leftBehind; ///< How many files should not be there, when all has been put in order.
};

class CrashTest : public ::testing::Test
{
protected:
    CrashTest() { FailingCalls::Begin({}); } // what is killed while it waits for the disk tells nothing new

    static void Attack(const std::string& name, const Work& work)
    {
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
                    while (work.store(writer, number) && ::write(writer.reports[1], &number, sizeof number) > 0)
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
                const int found = work.find(writer);
                lost += found < reported;
                torn += found > reported + 1; // at most what the signal came into
                writer.stored = found;
            }
            left += work.leftBehind();
        }
        Conclude(name, {{"rounds", rounds}, {"acknowledged writes", writes}},
                 {{"lost", lost}, {"torn", torn}, {"files left behind", left}});
    }

    ScratchMachine m_machine;
};

TEST_F(CrashTest, AWriterLeavesAWholeHive)
{
    const std::string filler(20'000, 'x'); // makes the writing of the file a larger part of the time
    m_machine.WriteText(HKEY_CURRENT_USER, "Key", "filler", filler);
    const fs::path hive = m_machine.Root() / "Registry" / "HKEY_CURRENT_USER.reg";
    const auto set = [](const Writer& writer, int number)
    { return RegistryHelper::SetIntValue(HKEY_CURRENT_USER, "Key", writer.name, number); };
    const auto get = [](const Writer& writer)
    { return RegistryHelper::GetIntValue(HKEY_CURRENT_USER, "Key", writer.name, 0); };
    const auto leftBehind = [&]
    {
        EXPECT_EQ(RegistryHelper::GetStringValue(HKEY_CURRENT_USER, "Key", "filler", ""), filler);
        EXPECT_TRUE(set({"test"}, get({"test"}) + 1)) << "no lock is held";
        return TemporaryFiles(hive.parent_path()).size() + exists(fs::path{hive} += ".skipped");
    };
    Attack("killed writers", {set, get, leftBehind});
}

TEST_F(CrashTest, ACopyThatNeedsANameIsWhole)
{
    FailingCalls::Begin({.hasUnnamedFiles = false});
    const fs::path installed = m_machine.Root() / "Default.ini";
    const std::string content(66'000, 'd');
    WriteFile(installed, content);
    const fs::path folder = m_machine.Root() / "user" / "folder"; // missing as well, so that it is made meanwhile
    const auto path = [&](const Writer& writer, int number) { return folder / (writer.name + std::to_string(number)); };

    const auto provide = [&](const Writer& writer, int number) {
        return Provide({path(writer, number).string(), installed.string()}).length() != 0;
    };
    const auto find = [&](const Writer& writer)
    {
        int number = writer.stored;
        while (number < Torn && exists(path(writer, number + 1)))
            number = ReadFile(path(writer, number + 1)) == content ? number + 1 : Torn;
        return number;
    };
    const auto leftBehind = [&]
    {
        AgeTemporaryFiles(folder);
        create_directories(folder); // what was left is removed by the next copy of the kind
        Quenlor::QnFileName::QnCopyFile(installed.wstring().c_str(), (folder / "0").wstring().c_str(), true);
        const std::size_t left = TemporaryFiles(folder).size();
        fs::remove_all(folder.parent_path());
        return left;
    };
    Attack("killed copies that need a name", {provide, find, leftBehind});
}
} // namespace
