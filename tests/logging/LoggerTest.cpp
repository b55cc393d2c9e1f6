#include "Logger.h"

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
#include "support/KnownDifferences.h"

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

    /// Lets each logger write to a file with its name, or where `place` says.
    void Configure(const path& file, const std::string& place = ".") const
    {
        WriteFile(file,
                  R"(<logging><appender name="a" type="file" path=")" + place +
                      R"(/${logger}.log" pattern="%v"/><root level="info"><appender-ref ref="a"/></root></logging>)");
    }

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
    const path m_programData = m_folder / "AppData";
};

TEST_F(LoggerOfPrograms, HasTheNameOfTheProgram)
{
    Configure(m_programData / "FraxoPro.log.xml");
    Run(Install("Editor"));
    Run(Install("Viewer"));
    EXPECT_THAT(ReadFile(m_programData / "Editor.log"), LooksLike("start\r?\nend\r?\n"));
    EXPECT_THAT(ReadFile(m_programData / "Viewer.log"), LooksLike("start\r?\nend\r?\n"));
}

TEST_F(LoggerOfPrograms, FollowsTheConfigurationBesideTheProgram)
{
    Configure(m_programData / "FraxoPro.log.xml");
    Configure(m_folder / "FraxoPro.log.xml", "${CrashReports}");
    Run(Install("Editor"));
    EXPECT_TRUE(exists(m_folder / "LocalAppData" / "CrashReports" / "Editor.log"));
    EXPECT_FALSE(exists(m_programData / "Editor.log"));
}

TEST_F(LoggerOfPrograms, LosesNoRecordOfProgramsThatRollOneFileAndCrash)
{
    if (const char* const answer = KnownDifference())
        GTEST_SKIP() << "Wine " << answer;
    WriteFile(m_folder / "FraxoPro.log.xml", R"(<logging>
        <appender name="a" type="rolling-file" path="a.log" size="1KB" count="900" pattern="%n %v"/>
        <root level="info"><appender-ref ref="a"/></root></logging>)");
    std::multiset<std::string> expected;
    std::vector<std::string> commands;
    for (const std::string name : {"Quick", "Hasty", "Busy", "Slow"})
    {
        const int count = name == "Slow" ? 20 : 300;
        commands.push_back(Install(name) + ' ' + std::to_string(count) + (name == "Slow" ? " 10" : " 0"));
        expected.insert(name + " start");
        for (int record = 0; record < count; ++record)
            expected.insert(name + ' ' + std::to_string(record));
    }
    std::vector<std::thread> programs;
    for (const std::string& command : commands)
        programs.emplace_back([&command] { Run(command); });
    for (std::thread& program : programs)
        program.join();

    std::multiset<std::string> found;
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator{m_folder})
    {
        if (entry.path().extension() != ".log")
            continue;
        ++files;
        std::ifstream file{entry.path()};
        for (std::string line; std::getline(file, line);)
            found.insert(line);
    }
    EXPECT_EQ(found, expected);
    EXPECT_GT(files, 2U);
}

using LoggerOfThisProcess = LoggingTest;

TEST_F(LoggerOfThisProcess, IsConfiguredInProgramData)
{
    Logger::Initialize();
    const path file = NativePath(m_machine.ProductFolder(ShellFolder::ProgramData)) / "FraxoPro.log.xml";
    WriteFile(file, R"(<logging><appender name="a" type="file" path="a.log" pattern="%v"/>
                       <root><appender-ref ref="a"/></root></logging>)");
    LoggingConfig::ActivateProvider(LoggingProviderType::ConfigurationFile);
    Logger::Get()->Error("here");
    EXPECT_THAT(ReadFile(file.parent_path() / "a.log"), LooksLike("here\r?\n"));
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
