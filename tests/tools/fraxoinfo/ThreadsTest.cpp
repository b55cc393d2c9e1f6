#include <atomic>
#include <functional>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "Answer.h"
#include "CoreUtilities.h"
#include "SettledOperations.h"
#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/KnownDifferences.h"

namespace
{
using namespace FraxoInfo;

// In a process of their own, so that the first calls of all are among these.
using Threads = InstallationTest;

TEST_F(Threads, GetTheSameAnswersWhenAllAskAtOnce)
{
    const Bases bases = Install();
    WriteFile(NativePath(bases.root + R"(Default\Plugins\Plugins.ini)"), "[USER-TOOLS]\n");
    m_machine.WriteData(HKEY_CLASSES_ROOT, InstallationKey + R"(\Language)", "InstalledLanguages", REG_MULTI_SZ,
                        {"de\0en\0", 7});
    // Text that the first of them turns into a number, which is not the default.
    for (const char* const name : {"FEEDCategory0", "FEEDZone0", "ShowOnStartup"})
        m_machine.WriteText(HKEY_CURRENT_USER, SettingsKey + R"(\RSSSettings)", name, "1");
    m_machine.WriteText(HKEY_CURRENT_USER, SettingsKey + R"(\RSSSettings)", "EnableFeed", "0");

    constexpr int count = 8;
    std::vector<std::vector<std::string>> answers(count);
    std::atomic<int> arrived = 0;
    const auto askAll = [&](std::vector<std::string>& mine)
    {
        int expected = 0;
        for (const Operation& operation : Catalogue())
        {
            expected += count;
            ++arrived;
            while (arrived < expected) // so that all ask at once; std::barrier of mingw's GCC 12 loses wake-ups
                std::this_thread::yield();
            std::string answer;
            try
            {
                answer = ToText(operation.ask());
            }
            catch (const std::runtime_error& failure) // a default is missing
            {
                answer = failure.what();
            }
            if (IsSettled(operation))
                mine.push_back(std::string{operation.name} + ": " + answer);
        }
    };
    // Meanwhile the environment changes, in which the answers are looked for as well.
    std::atomic<bool> answered = false;
    const auto changeEnvironment = [&]
    {
        for (int i = 0; !answered && !KnownDifference("changed variables"); ++i)
        {
            const std::string name = "FRAXO_UNRELATED_" + std::to_string(i % 64);
            SetEnvironmentVariableValue(name, i / 64 % 2 == 0 ? std::string(64, 'x') : "");
        }
    };
    const std::future<void> changer = std::async(std::launch::async, changeEnvironment);
    {
        std::vector<std::future<void>> threads; // each is waited for at the end of this block
        for (std::vector<std::string>& mine : answers)
            threads.push_back(std::async(std::launch::async, askAll, std::ref(mine)));
    }
    answered = true;
    for (const std::vector<std::string>& mine : answers)
        EXPECT_EQ(mine, answers.front());
    EXPECT_THAT(answers.front(), ::testing::IsSupersetOf({"IsRssFeedEnabled: false", "GetInstalledLanguages: de\nen"}));
}
} // namespace
