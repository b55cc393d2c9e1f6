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

// Processes that make files of a user: killed at random moments, and many at one file. FRAXO_KILL_ROUNDS and
// FRAXO_RACE_ROUNDS say how often.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;

class CopiesTest : public ::testing::Test
{
protected:
    int RunCopyProgram(const fs::path& place, const std::string& more = "") const
    {
        const fs::path programs = NativePath(DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8());
        std::string command;
        for (const fs::path& word : {programs / COPY_PROGRAM, m_installed, place})
            command += '"' + word.string() + "\" ";
        return m_machine.Run(command + more);
    }

    const ScratchMachine m_machine;
    const fs::path m_installed = m_machine.Root() / "Default.ini";
    const fs::path m_folder = m_machine.Root() / "user";
};

TEST_F(CopiesTest, AreWholeAfterAKill)
{
    const std::string content(66'000, 'd');
    WriteFile(m_installed, content);
    const fs::path edited = m_folder / "3";
    const int rounds = CountFrom("FRAXO_KILL_ROUNDS", 100);
    std::mt19937 random{22};
    std::size_t copies = 0, lost = 0, torn = 0, left = 0;
    for (int round = 0; round < rounds; ++round)
    {
        const bool isEdited = round % 2 != 0; // otherwise the folder is made meanwhile
        fs::remove_all(m_folder);
        if (isEdited)
            WriteFile(edited, "edited");
        const int made = RunCopyProgram(m_folder, std::to_string(random() % 10'000));
        ASSERT_GT(made, 0);
        copies += static_cast<std::size_t>(made);
        CountAndAgeTemporaryFiles(m_folder);
        Quenlor::QnFileName::QnCopyFile(m_installed.wstring().c_str(), (m_folder / "0").wstring().c_str(),
                                        true); // removes what such a copy has left
        left += CountAndAgeTemporaryFiles(m_folder);
        for (int number = 1; number <= made; ++number)
            lost += !exists(m_folder / std::to_string(number));
        for (const fs::path& copy : fs::directory_iterator{m_folder}) // more may be there than were reported
            torn += ReadFile(copy) != (isEdited && copy == edited ? "edited" : content);
    }
    Conclude("killed copies", {{"rounds", rounds}, {"copies", copies}},
             {{"lost", lost}, {"torn or overwritten", torn}, {"files left over", left}});
}

TEST_F(CopiesTest, AreWholeInARaceAndTheFirstEditIsKept)
{
    constexpr int processes = 16;
    WriteFile(m_installed, std::string(1'000'000, 'd'));
    const fs::path copy = m_folder / "folder" / "User.ini"; // no folder is there at first
    const int rounds = CountFrom("FRAXO_RACE_ROUNDS", 5);
    std::size_t torn = 0, lost = 0, left = 0;
    for (int round = 0; round < rounds; ++round)
    {
        fs::remove_all(m_folder);
        std::vector<std::future<int>> programs;
        for (int i = 0; i < processes; ++i)
            programs.push_back(std::async(std::launch::async, [&] { return RunCopyProgram(copy); }));
        WriteFile(m_installed.string() + ".edit", "edited"); // which they wait for
        for (std::future<int>& program : programs)
            torn += program.get() != 0;
        lost += ReadFile(copy) != "edited";
        left += CountAndAgeTemporaryFiles(copy.parent_path());
    }
    Conclude("many copies", {{"rounds", rounds}, {"processes", processes}},
             {{"lost edits", lost}, {"torn reads", torn}, {"files left over", left}});
}
} // namespace
