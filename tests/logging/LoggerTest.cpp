#include "Logger.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "DirectoryConfig.h"
#include "platform/quenlor5/logging/LoggingTest.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor::NativeLogging;
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
        const path copy = path{name}.replace_extension(program.extension());
        copy_file(m_programs / program, copy, std::filesystem::copy_options::overwrite_existing);
        return (path{"."} / copy).string();
    }

    static void Run(const std::string& command) { EXPECT_EQ(std::system(command.c_str()), 0); }

    ScratchMachine m_machine;
    const path m_before = std::filesystem::current_path();
    const path m_programs{NativePath(DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8())};
    const path m_folder{NativePath(m_machine.Folder("Output"))};
};

TEST_F(LoggerOfPrograms, HasTheProgramsNameAndPrefersTheConfigurationBesideIt)
{
    const auto configuration = [](const std::string& place)
    {
        return R"(<logging><appender name="a" type="file" path=")" + place +
               R"(/${logger}.log" pattern="%v"/><root level="info"><appender-ref ref="a"/></root></logging>)";
    };
    WriteFile(m_folder / "AppData" / "FraxoPro.log.xml", configuration("."));
    Run(Install("Editor"));
    WriteFile(m_folder / "FraxoPro.log.xml", configuration("${CrashReports}"));
    Run(Install("Viewer"));
    EXPECT_EQ(LinesOf(m_folder / "AppData" / "Editor.log"), "start\nend\n");
    EXPECT_EQ(LinesOf(m_folder / "LocalAppData" / "CrashReports" / "Viewer.log"), "start\nend\n");
}

/// Runs programs that share one rolling log and end as in a crash: three fast ones and a slow one, which holds files
/// that were moved long ago. A viewer opens the log again and again, and on Windows prevents that it is moved
/// meanwhile.
class LogOfFourPrograms : public LoggerOfPrograms
{
protected:
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
        std::atomic running = commands.size();
        std::vector<std::thread> programs;
        for (const std::string& command : commands)
            programs.emplace_back([&] { Run(command), --running; });
        for (bool isOpen = false; running > 0; isOpen = !isOpen)
        {
            const std::ifstream viewer{isOpen ? m_folder / "a.log" : path{}};
            std::this_thread::sleep_for(std::chrono::milliseconds{5});
        }
        for (std::thread& program : programs)
            program.join();
        for (const auto& entry : std::filesystem::directory_iterator{m_folder})
        {
            if (entry.path().extension() != ".log")
                continue;
            ++m_files;
            std::ifstream file{entry.path()};
            for (std::string line; std::getline(file, line);)
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

TEST_F(LoggerOfThisProcess, IsConfiguredInProgramData)
{
    Logger::Initialize();
    const path file = NativePath(m_machine.ProductFolder(ShellFolder::ProgramData)) / "FraxoPro.log.xml";
    WriteFile(file, std::string{"<logging>"} + ToFile + "</logging>");
    LoggingConfig::ActivateProvider(LoggingProviderType::ConfigurationFile);
    Logger::Get()->Error("here");
    EXPECT_EQ(LinesOf(file.parent_path() / "a.log"), "here\n");
}

TEST_F(LoggerOfThisProcess, WorksWithoutAFolder)
{
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    ::testing::internal::CaptureStderr();
    Logger::Get()->Info("not shown");
    Logger::Get()->Warning("shown");
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), LooksLike(".* warning SharedUtilitiesTests: shown\r?\n"));
}
} // namespace
