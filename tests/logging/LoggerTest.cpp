#include "Logger.h"

#include <cstdlib>
#include <filesystem>
#include <string>

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
    LoggerOfPrograms() { m_machine.SetEnvironment("FRAXO_PRO_ROOT_DIRECTORY", m_folder.string()); }

    /// Lets each logger write to a file with its name, or where `place` says.
    void Configure(const path& file, const std::string& place = ".") const
    {
        WriteFile(file,
                  R"(<logging><appender name="a" type="file" path=")" + place +
                      R"(/${logger}.log" pattern="%v"/><root level="info"><appender-ref ref="a"/></root></logging>)");
    }

    void Run(const std::string& name) const
    {
        const path program{LOGGER_PROGRAM};
        const path copy = path{name}.replace_extension(program.extension());
        copy_file(NativePath(DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8()) / program, m_folder / copy,
                  std::filesystem::copy_options::overwrite_existing);
        const path before = std::filesystem::current_path();
        current_path(m_folder); // in which the shell needs no quotes
        EXPECT_EQ(std::system((path{"."} / copy).string().c_str()), 0);
        current_path(before);
    }

    ScratchMachine m_machine;
    const path m_folder{NativePath(m_machine.Folder("Output"))};
    const path m_programData = m_folder / "AppData";
};

TEST_F(LoggerOfPrograms, HasTheNameOfTheProgramUnderOneSharedConfiguration)
{
    Configure(m_programData / "FraxoPro.log.xml");
    Run("Editor");
    Run("Viewer");
    EXPECT_THAT(ReadFile(m_programData / "Editor.log"), LooksLike("start\r?\nend\r?\n"));
    EXPECT_THAT(ReadFile(m_programData / "Viewer.log"), LooksLike("start\r?\nend\r?\n"));
}

TEST_F(LoggerOfPrograms, FollowsTheConfigurationBesideTheProgramWhichMayNameTheLibrarysFolders)
{
    Configure(m_programData / "FraxoPro.log.xml");
    Configure(m_folder / "FraxoPro.log.xml", "${CrashReports}");
    Run("Editor");
    EXPECT_TRUE(exists(m_folder / "LocalAppData" / "CrashReports" / "Editor.log"));
    EXPECT_FALSE(exists(m_programData / "Editor.log"));
}

class LoggerOfThisProcess : public LoggingTest
{
};

TEST_F(LoggerOfThisProcess, NamesTheFileInProgramDataEvenWhenItIsMissing)
{
    Logger::Initialize();
    const path file = NativePath(m_machine.ProductFolder(ShellFolder::ProgramData)) / "FraxoPro.log.xml";
    WriteFile(file, R"(<logging><appender name="a" type="file" path="a.log" pattern="%v"/>
                       <root><appender-ref ref="a"/></root></logging>)");
    LoggingConfig::ActivateProvider(LoggingProviderType::ConfigurationFile);
    Logger::Get()->Error("here");
    EXPECT_THAT(ReadFile(file.parent_path() / "a.log"), LooksLike("here\r?\n"));
}

TEST_F(LoggerOfThisProcess, IsThereEvenWhenTheShellCannotNameTheFolder)
{
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    ::testing::internal::CaptureStderr();
    Logger::Get()->Info("not shown");
    Logger::Get()->Warning("shown");
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), LooksLike(".* warning SharedUtilitiesTests: shown\r?\n"));
}
} // namespace
