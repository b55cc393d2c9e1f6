#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

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

constexpr std::size_t Processes = 3;
constexpr int Torn = 2; // more than the one write that the signal came into

/// What is done over and over: with 1, with 2, and so on by each process.
struct Work
{
    std::function<bool(std::size_t process, int number)> act;
    /// The highest number that is on disk as a whole, given that of the last round and the last one that was reported.
    std::function<int(std::size_t process, int before, int reported)> reached;
    /// Puts everything in order for the next round. @return how many files should not be there
    std::function<std::size_t()> tidy;
};

class CrashTest : public ::testing::Test
{
protected:
    CrashTest() { FailingCalls::Begin({}); } // what is killed while it waits for the disk tells nothing new

    static void Attack(const std::string& name, const Work& work)
    {
        const int rounds = CountFrom("FRAXO_KILL_ROUNDS", 100);
        std::mt19937 random{22};
        std::vector<int> last(Processes, 0);
        std::size_t reports = 0, lost = 0, torn = 0, left = 0;
        for (int round = 0; round < rounds; ++round)
        {
            std::vector<pid_t> children;
            std::vector<int> pipes;
            for (std::size_t process = 0; process < Processes; ++process)
            {
                int ends[2];
                ASSERT_EQ(::pipe(ends), 0);
                const auto workOn = [&]
                {
                    for (int number = last[process] + 1;; ++number)
                    {
                        if (!work.act(process, number) || ::write(ends[1], &number, sizeof number) < 0)
                            return 1;
                    }
                };
                children.push_back(Start(workOn));
                ::close(ends[1]);
                pipes.push_back(ends[0]);
            }
            std::this_thread::sleep_for(std::chrono::microseconds{random() % 20'000});
            for (const pid_t child : children)
            {
                ::kill(child, SIGKILL);
                EXPECT_EQ(ExitCode(child), -1) << "it failed before it was killed";
            }
            for (std::size_t process = 0; process < Processes; ++process)
            {
                const int before = last[process];
                int reported = before;
                while (::read(pipes[process], &reported, sizeof reported) == sizeof reported)
                    ++reports;
                ::close(pipes[process]);
                last[process] = work.reached(process, before, reported);
                lost += last[process] < reported;
                torn += last[process] >= reported + Torn;
            }
            left += work.tidy();
        }
        Conclude(name, {{"rounds", rounds}, {"acknowledged writes", reports}},
                 {{"lost", lost}, {"torn", torn}, {"files left behind", left}});
    }

    ScratchMachine m_machine;
};

TEST_F(CrashTest, AWriterLeavesAWholeHive)
{
    const auto name = [](std::size_t process) { return "n" + std::to_string(process); };
    const std::string filler(20'000, 'x'); // makes the writing of the file a larger part of the time
    m_machine.WriteText(HKEY_CURRENT_USER, "Key", "filler", filler);
    const fs::path hive = m_machine.Root() / "Registry" / "HKEY_CURRENT_USER.reg";
    const auto set = [&](std::size_t process, int number)
    { return RegistryHelper::SetIntValue(HKEY_CURRENT_USER, "Key", name(process), number); };
    const auto get = [&](std::size_t process, int, int)
    { return RegistryHelper::GetIntValue(HKEY_CURRENT_USER, "Key", name(process), 0); };
    const auto tidy = [&]
    {
        EXPECT_EQ(RegistryHelper::GetStringValue(HKEY_CURRENT_USER, "Key", "filler", ""), filler);
        EXPECT_TRUE(set(Processes, get(Processes, 0, 0) + 1)) << "no lock is held";
        return TemporaryFiles(hive.parent_path()).size() + exists(fs::path{hive} += ".skipped");
    };
    Attack("killed writers", {set, get, tidy});
}

/// Where the file system knows files without a name, and where it does not.
class ProvisioningCrashTest : public CrashTest, public ::testing::WithParamInterface<bool>
{
protected:
    bool HasUnnamedFiles() const
    {
        const int file = ::open(m_machine.Root().c_str(), O_TMPFILE | O_WRONLY, 0600);
        ::close(file);
        return file >= 0;
    }
};

TEST_P(ProvisioningCrashTest, LeavesWholeCopies)
{
    const std::string content(100'000, 'd');
    const fs::path installed = m_machine.Root() / "Default.ini";
    const fs::path folder = m_machine.Root() / "user" / "folder"; // missing as well, so that it is made meanwhile
    WriteFile(installed, content);
    FailingCalls::Begin({.hasUnnamedFiles = GetParam()});
    const bool isTidy = HasUnnamedFiles();

    const auto path = [&](std::size_t process, int number)
    { return folder / (std::to_string(process) + '-' + std::to_string(number) + ".ini"); };
    const auto provide = [&](std::size_t process, int number) {
        return Provide({path(process, number).string(), installed.string()}).length() != 0;
    };
    const auto reached = [&](std::size_t process, int before, int reported)
    {
        int number = before;
        for (; exists(path(process, number + 1)); ++number)
        {
            if (ReadFile(path(process, number + 1)) != content)
                return reported + Torn;
        }
        return number;
    };
    const auto tidy = [&]
    {
        using Quenlor::QnFileName;
        create_directories(folder);
        if (!isTidy) // the first copy an hour later removes what was left
        {
            AgeTemporaryFiles(folder);
            QnFileName::QnCopyFile(installed.wstring().c_str(), (folder / "0").wstring().c_str(), true);
        }
        const std::size_t left = TemporaryFiles(folder).size();
        fs::remove_all(folder.parent_path());
        return left;
    };
    Attack(GetParam() ? "killed copies" : "killed copies that need a name", {provide, reached, tidy});
}

INSTANTIATE_TEST_SUITE_P(, ProvisioningCrashTest, ::testing::Bool(),
                         [](const auto& row) { return row.param ? "WithoutAName" : "WithAName"; });
} // namespace
