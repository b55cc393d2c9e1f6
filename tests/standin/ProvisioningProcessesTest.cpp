#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "IniReader.h"
#include "configfiles/UserFile.h"
#include "standin/OrdinaryUser.h"
#include "standin/Processes.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// Several processes that ask for the same missing file. FRAXO_RACE_ROUNDS and FRAXO_KILL_ROUNDS make the tests longer.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using ::testing::StrEq;
using ::testing::ThrowsMessage;
using Clock = std::chrono::steady_clock;

/// The user's folder is missing as well, so that processes also meet while making it.
class ProvisioningProcessesTest : public ::testing::Test
{
protected:
    ProvisioningProcessesTest()
    {
        for (int line = 0; m_content.length() < 1'000'000; ++line)
            m_content += "Key" + std::to_string(line) + "=value\n";
        WriteFile(m_machine.Root() / "default.ini", m_content);
    }

    void RemoveUserFolder() const { std::filesystem::remove_all(m_folder.parent_path()); }

    std::ptrdiff_t FileCount() const
    {
        return std::distance(std::filesystem::directory_iterator{m_folder}, std::filesystem::directory_iterator{});
    }

    ScratchMachine m_machine;
    const std::filesystem::path m_folder = m_machine.Root() / "user" / "folder";
    const std::filesystem::path m_path = m_folder / "file.ini";
    const UserFile m_file{m_path.string(), (m_machine.Root() / "default.ini").string()};
    std::string m_content;
};

TEST_F(ProvisioningProcessesTest, SixteenGetOneWholeFileAndKeepTheEditOfTheFirst)
{
    for (int round = CountFrom("FRAXO_RACE_ROUNDS", 10); round > 0; --round)
    {
        RemoveUserFolder();
        const std::filesystem::path edit = m_machine.Root() / "edit.ini";
        WriteFile(edit, "edited");
        int gate[2];
        ASSERT_EQ(::pipe(gate), 0);
        std::vector<pid_t> children;
        for (int process = 0; process < 16; ++process)
        {
            children.push_back(Start(
                [&]
                {
                    char none;
                    ::close(gate[1]);
                    if (::read(gate[0], &none, 1) != 0) // until the parent opens the gate for all at once
                        return 1;
                    Provide(m_file);
                    const std::string seen = ReadFile(m_path);
                    if (seen != m_content && seen != "edited")
                        return 2;
                    std::error_code error;
                    std::filesystem::rename(edit, m_path, error); // done by the first, which takes the edit away
                    return 0;
                }));
        }
        ::close(gate[0]);
        ::close(gate[1]);
        for (const pid_t child : children)
            EXPECT_EQ(ExitCode(child), 0) << "2 is a partial file, -1 an exception";
        EXPECT_EQ(ReadFile(m_path), "edited");
        EXPECT_EQ(FileCount(), 1);
    }
}

TEST_F(ProvisioningProcessesTest, AKilledOneLeavesAWholeFileOrNone)
{
    const bool hasUnnamedFiles = [this]
    {
        const int file = ::open(m_machine.Root().c_str(), O_TMPFILE | O_WRONLY, 0600);
        ::close(file);
        return file >= 0;
    }();
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(ExitCode(Start([this] { return Provide(m_file), 0; })), 0);
    const auto usual = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);

    std::mt19937 random{22};
    std::uniform_int_distribution<std::chrono::microseconds::rep> moments{0, usual.count()};
    for (int round = CountFrom("FRAXO_KILL_ROUNDS", 40); round > 0; --round)
    {
        RemoveUserFolder();
        const pid_t child = Start([this] { return Provide(m_file), 0; });
        std::this_thread::sleep_for(std::chrono::microseconds{moments(random)});
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        ExitCode(child);
        const bool hasFile = exists(m_path);
        EXPECT_TRUE(!hasFile || ReadFile(m_path) == m_content);
        EXPECT_TRUE(!hasUnnamedFiles || !exists(m_folder) || FileCount() == (hasFile ? 1 : 0));
        Provide(m_file);
        EXPECT_TRUE(ReadFile(m_path) == m_content) << "what was left behind is no obstacle";
    }
}

TEST_F(ProvisioningProcessesTest, ACopyIsReadableByItsOwnerAloneWhateverItsDefaultAndTheUmaskAre)
{
    const mode_t former = ::umask(0);
    Provide(m_file);
    ::umask(former);
    EXPECT_EQ(status(m_path).permissions(), std::filesystem::perms{0600});
}

TEST_F(ProvisioningProcessesTest, AFolderThatIsClosedToThisUserHoldsNothingAndTakesNothing)
{
    WriteFile(m_path, "[Main]\nKey=v\n");
    permissions(m_folder, std::filesystem::perms::none);
    const OrdinaryUser user{m_machine.Root()};
    IniReader reader;
    EXPECT_FALSE(reader.LoadFile(m_path.string()));
    EXPECT_THAT([this] { Provide(m_file); },
                ThrowsMessage<std::runtime_error>(StrEq("default.ini file could not be copied.")));
}

TEST_F(ProvisioningProcessesTest, ALinkToNowhereInTheFilesPlaceIsAFailure)
{
    create_directories(m_folder);
    create_symlink(m_folder / "nowhere", m_path);
    EXPECT_THROW(Provide(m_file), std::runtime_error);
}
} // namespace
