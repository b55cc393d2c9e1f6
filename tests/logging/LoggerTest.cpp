#include "Logger.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "DirectoryConfig.h"
#include "platform/quenlor5/logging/LoggingTest.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using std::filesystem::path;

/// Programs in a build output, where a variable says where everything is.
class LoggerOfPrograms : public ::testing::Test
{
protected:
    LoggerOfPrograms()
    {
        m_machine.SetEnvironment("FRAXO_PRO_ROOT_DIRECTORY", m_folder.string());
        current_path(m_folder); // in which the shell needs no quotes
    }
    ~LoggerOfPrograms() override { current_path(m_before); }

    /// @return the command that runs a copy of the program
    std::string Install(const std::string& name) const
    {
        const path program{LOGGER_PROGRAM};
        const path copy = path{"."} / path{name}.replace_extension(program.extension());
        copy_file(m_programs / program, copy);
        return copy.string();
    }

    static void Run(const std::string& command) { EXPECT_EQ(std::system(command.c_str()), 0); }

    ScratchMachine m_machine;
    const path m_before = std::filesystem::current_path();
    const path m_programs{NativePath(DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8())};
    const path m_folder{NativePath(m_machine.Folder("Output"))};
};

TEST_F(LoggerOfPrograms, HasTheProgramsNameAndPrefersTheConfigurationBesideIt)
{
    WriteFile(m_folder / "AppData" / "FraxoPro.log.xml", R"(<logging>
        <appender name="a" type="file" path="${CrashReports}/${logger}.log" pattern="%v"/>
        <root level="info"><appender-ref ref="a"/></root></logging>)");
    Run(Install("Editor"));
    WriteFile(m_folder / "FraxoPro.log.xml", "<logging><root level='off'/></logging>");
    Run(Install("Viewer"));
    const path logs = m_folder / "LocalAppData" / "CrashReports";
    EXPECT_EQ(LinesOf(ReadFile(logs / "Editor.log")), "start\nend\n");
    EXPECT_FALSE(exists(logs / "Viewer.log"));
}

TEST_F(LoggerOfPrograms, HasHandedEachRecordToTheSystemBeforeACrash)
{
    WriteFile(m_folder / "FraxoPro.log.xml", R"(<logging>
        <appender name="c" type="console" target="stdout" pattern="%v"/>
        <root level="info"><appender-ref ref="c"/></root></logging>)");
    Run(Install("Editor") + " 1 0 >out.txt");
    EXPECT_EQ(LinesOf(ReadFile("out.txt")), "start\n0\n");
}

class LogOfFourPrograms : public LoggerOfPrograms
{
protected:
    /// Runs programs that share one rolling log and end as in a crash: three fast ones and a slow one, which holds
    /// files that were moved long ago. A viewer opens the log again and again, and on Windows prevents that it is moved
    /// meanwhile.
    void RunAll(const std::string& count)
    {
        WriteFile(m_folder / "FraxoPro.log.xml", R"(<logging>
            <appender name="a" type="rolling-file" path="a.log" size="1KB" count=")" +
                                                     count + R"(" pattern="%n %v"/>
            <root level="info"><appender-ref ref="a"/></root></logging>)");
        std::vector<std::string> commands;
        for (const std::string name : {"Quick", "Hasty", "Busy", "Slow"})
        {
            const int records = name == "Slow" ? 20 : 300;
            m_written.insert(name + " start");
            for (int record = 0; record < records; ++record)
                m_written.insert(name + ' ' + std::to_string(record));
            commands.push_back(Install(name) + ' ' + std::to_string(records) + (name == "Slow" ? " 10" : " 0"));
        }
        std::vector<std::thread> programs;
        std::atomic running = commands.size();
        for (const std::string& command : commands)
            programs.emplace_back([&] { Run(command), --running; });
        for (bool isOpen = false; running > 0; isOpen = !isOpen)
        {
            const std::ifstream viewer{isOpen ? "a.log" : ""};
            std::this_thread::sleep_for(std::chrono::milliseconds{5});
        }
        for (std::thread& program : programs)
            program.join();
        for (const auto& entry : std::filesystem::directory_iterator{m_folder})
        {
            if (entry.path().extension() != ".log")
                continue;
            ++m_files;
            std::istringstream lines{LinesOf(ReadFile(entry.path()))};
            for (std::string line; std::getline(lines, line);)
                m_found.insert(line);
        }
    }

    std::multiset<std::string> m_written;
    std::multiset<std::string> m_found;
    std::size_t m_files = 0;
};

TEST_F(LogOfFourPrograms, HasEveryRecord)
{
    RunAll("900");
    EXPECT_EQ(m_found, m_written);
    EXPECT_GT(m_files, 2U);
}

TEST_F(LogOfFourPrograms, HasTheNewestRecordsWhenNoFullFileIsKept)
{
    RunAll("0");
    EXPECT_TRUE(std::ranges::includes(m_written, m_found)) << "all are whole";
    EXPECT_TRUE(m_found.contains("Quick 299") || m_found.contains("Hasty 299") || m_found.contains("Busy 299") ||
                m_found.contains("Slow 19"));
    EXPECT_EQ(m_files, 1U);
}

using LoggerOfThisProcess = LoggingTest;

TEST_F(LoggerOfThisProcess, WorksWithoutAFolder)
{
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    ::testing::internal::CaptureStderr();
    Logger::Get()->Info("not shown");
    Logger::Get()->Warning("shown");
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), LooksLike(".* warning SharedUtilitiesTests: shown\r?\n"));
}
} // namespace
