#include <chrono>
#include <filesystem>
#include <list>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <Quenlor/QnFileName.h>
#include <gtest/gtest.h>

#include "DirectoryConfig.h"
#include "reliability/Attacks.h"
#include "support/ChildProcess.h"
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
    ScratchMachine m_machine;
    const std::string m_root = NativePath(m_machine.Folder("")).string();
    const std::string m_installed = m_root + "Default.ini";
    const fs::path m_folder = m_root + "user";
    const std::string m_program =
        (NativePath(DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8()) / COPY_PROGRAM).string();
};

TEST_F(CopiesTest, AreWholeAfterAKill)
{
    const std::string content(66'000, 'd');
    WriteFile(m_installed, content);
    const fs::path reports = m_root + "reports", edited = m_folder / "3";
    const int rounds = CountFrom("FRAXO_KILL_ROUNDS", 100);
    std::mt19937 random{22};
    std::size_t copies = 0, lost = 0, torn = 0, left = 0;
    for (int round = 0; round < rounds; ++round)
    {
        const bool isEdited = round % 2 != 0; // otherwise the folder is made meanwhile
        fs::remove_all(m_folder);
        fs::remove(reports);
        if (isEdited)
            WriteFile(edited, "edited");
        ChildProcess child{{m_program, m_installed, m_folder.string(), reports.string()}};
        for (int wait = 0; wait < 60'000 && ReadFile(reports).empty(); ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds{1});
        std::this_thread::sleep_for(std::chrono::microseconds{random() % 10'000});
        child.Kill();

        const std::size_t reported = ReadFile(reports).size(); // a byte for each copy
        ASSERT_GT(reported, 0U);
        copies += reported;
        AgeTemporaryFiles(m_folder);
        Quenlor::QnFileName::QnCopyFile(fs::path{m_installed}.wstring().c_str(), (m_folder / "0").wstring().c_str(),
                                        true); // removes what such a copy has left
        left += TemporaryFiles(m_folder).size();
        for (std::size_t number = 1; number <= reported + 1; ++number) // one more may be there than was reported
        {
            const fs::path copy = m_folder / std::to_string(number);
            lost += number <= reported && !exists(copy);
            torn += exists(copy) && ReadFile(copy) != (isEdited && copy == edited ? "edited" : content);
        }
    }
    Conclude("killed copies", {{"rounds", rounds}, {"copies", copies}},
             {{"lost", lost}, {"torn or overwritten", torn}, {"files left over", left}});
}

TEST_F(CopiesTest, AreWholeInARaceAndTheFirstEditIsKept)
{
    constexpr int processes = 16;
    const std::string content(1'000'000, 'd');
    WriteFile(m_installed, content);
    const fs::path copy = m_folder / "folder" / "User.ini"; // no folder is there at first
    const fs::path edit = m_root + "edit", gate = m_root + "gate";
    const int rounds = CountFrom("FRAXO_RACE_ROUNDS", 5);
    std::size_t torn = 0, failed = 0, lost = 0, left = 0;
    for (int round = 0; round < rounds; ++round)
    {
        fs::remove_all(m_folder);
        fs::remove(gate);
        WriteFile(edit, "edited");
        std::list<ChildProcess> children;
        for (int i = 0; i < processes; ++i)
            children.emplace_back(std::vector{m_program, m_installed, copy.string(), edit.string(), gate.string()});
        WriteFile(gate, "");
        for (ChildProcess& child : children)
        {
            const int code = child.Wait();
            torn += code == 2;
            failed += code != 0 && code != 2;
        }
        lost += ReadFile(copy) != "edited";
        left += TemporaryFiles(copy.parent_path()).size();
    }
    Conclude("many copies", {{"rounds", rounds}, {"processes", processes}},
             {{"lost edits", lost}, {"torn reads", torn}, {"failures", failed}, {"files left over", left}});
}
} // namespace
