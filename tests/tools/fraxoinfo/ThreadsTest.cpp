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
    WriteFile(NativePath(Install().root + R"(FRAXO\Plugins\Plugins.ini)"), "[USER-TOOLS]\n");
    m_machine.WriteData(HKEY_CLASSES_ROOT, InstallationKey + R"(\Language)", "InstalledLanguages", REG_MULTI_SZ,
                        {"de\0en\0", 7});
    // Text that the first of them turns into a number, which is not the default.
    for (const auto& [name, text] : {std::pair{"FEEDCategory0", "1"}, {"ShowOnStartup", "1"}, {"EnableFeed", "0"}})
        m_machine.WriteText(HKEY_CURRENT_USER, SettingsKey + R"(\RSSSettings)", name, text);

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
            std::string& answer = mine.emplace_back(std::string{operation.name} + ": ");
            try
            {
                answer += ToText(operation.ask());
            }
            catch (const std::runtime_error& failure) // a default is missing
            {
                answer += failure.what();
            }
            if (operation.name.starts_with("IsExeRunning")) // another test may be running fraxoinfo
                mine.pop_back();
        }
    };
    // Meanwhile the environment changes, in which the answers are looked for as well.
    std::atomic<bool> answered = false;
    const auto changeEnvironment = [&]
    {
        for (int i = 0; !answered && !KnownDifference("changed variables"); ++i)
            SetEnvironmentVariableValue("FRAXO_UNRELATED_" + std::to_string(i % 64),
                                        std::string(i % 128 < 64 ? 64U : 0U, 'x'));
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
