#include <filesystem>
#include <future>
#include <random>
#include <string>
#include <vector>

#include <Quenlor/QnFileName.h>
#include <gtest/gtest.h>

#include "DirectoryConfig.h"
#include "reliability/Attacks.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;

/// Processes that make the same files of a user at once, edit some of them and are killed at random moments.
/// FRAXO_COPY_ROUNDS says how often.
TEST(Copies, AreWholeAfterARaceAndAKillAndKeepTheFirstEdit)
{
    const ScratchMachine machine;
    const fs::path programs = NativePath(DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8());
    const fs::path installed = machine.Root() / "Default.ini", folder = machine.Root() / "user";
    std::string command;
    for (const fs::path& word : {programs / COPY_PROGRAM, installed, folder})
        command += '"' + word.string() + "\" ";
    const std::string content(66'000, 'd');
    WriteFile(installed, content);
    constexpr int processes = 4;
    const int rounds = CountFrom("FRAXO_COPY_ROUNDS", 25);
    std::mt19937 random{22};
    std::size_t copies = 0, lost = 0, torn = 0, overwritten = 0, left = 0;
    for (int round = 0; round < rounds; ++round)
    {
        fs::remove_all(folder); // which is made meanwhile
        std::vector<std::future<int>> ends;
        for (int i = 0; i < processes; ++i)
        {
            const std::string more = std::to_string(i) + ' ' + std::to_string(random() % 20'000);
            ends.push_back(std::async(std::launch::async, [&, more] { return machine.Run(command + more); }));
        }
        for (const std::future<int>& end : ends)
            end.wait();
        for (int i = 0; i < processes; ++i)
        {
            const int made = ends[static_cast<std::size_t>(i)].get();
            ASSERT_LT(made, 255) << "a file is torn, or was not made";
            for (int number = 1; number <= made; ++number, ++copies)
            {
                const std::string text = ReadFile(folder / std::to_string(number));
                lost += text.empty();
                overwritten += number % processes == i && text != "edited";
            }
        }
        CountAndAgeTemporaryFiles(folder);
        Quenlor::QnFileName::QnCopyFile(installed.wstring().c_str(), (folder / "0").wstring().c_str(),
                                        true); // removes what such a copy has left
        left += CountAndAgeTemporaryFiles(folder);
        for (const fs::path& copy : fs::directory_iterator{folder}) // more may be there than were reported
            torn += ReadFile(copy) != content && ReadFile(copy) != "edited";
    }
    Conclude("killed copies", {{"rounds", rounds}, {"copies", copies}},
             {{"lost", lost}, {"torn", torn}, {"overwritten edits", overwritten}, {"files left over", left}});
}
} // namespace
