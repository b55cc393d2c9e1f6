#include "DirectoryConfig.h"

#include <filesystem>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

using Getter = Quenlor::Utf8String (*)();

struct Sample
{
    Getter getter;
    std::string Bases::*base;
    const char* tail;
};

// The bases, one getter for each way to join, and what somebody might want to correct: "PlugIns" beside "Plugins".
// clang-format off
constexpr Sample Samples[] = {
    {DirectoryConfig::GetGBSteelDesignDirectory,         &Bases::machineData, R"(GBSteelDesign\)"},
    {DirectoryConfig::GetCrashReportsDirectory,          &Bases::userData,    R"(CrashReports\)"},
    {DirectoryConfig::GetStrucLinkAppDataDirectory,      &Bases::userData,    R"(Default\PlugIns\StrucLink\)"},
    {DirectoryConfig::GetPluginsDirectory,               &Bases::root,        R"(FRAXO\Plugins\)"},
    {DirectoryConfig::GetFRAXOProEngineExePath,          &Bases::root,        R"(FRAXO\FProFraxo\FProFraxo.exe)"},
};
// clang-format on

using DataDirectories = InstallationTest;

void ExpectSamples(const Bases& bases)
{
    for (const Sample& sample : Samples)
        EXPECT_EQ(sample.getter(), bases.*sample.base + sample.tail);
}

TEST_F(DataDirectories, LieInTheInstallationAndTheShellsFoldersOrBelowTheOutputsRootWithoutTheShell)
{
    ExpectSamples(Install());
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "ProgramData"));
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "LocalAppData"));

    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    m_machine.BreakShellFolder(ShellFolder::LocalAppData);
    const Bases output = RunFromOutput();
    ExpectSamples(output);
    EXPECT_EQ(DirectoryConfig::GetFraxoSectionDatabaseDirectory(), output.machineData + R"(Sections\)");
    EXPECT_EQ(DirectoryConfig::GetSampleModelsDirectory(), output.root + R"(Samples\Sample Models\)");
}

TEST_F(DataDirectories, AreRelativeWithoutARecordOfWhichTheModelsHaveTheirOwn)
{
    EXPECT_EQ(DirectoryConfig::GetHelpDirectory(), R"(Help\)");
    EXPECT_EQ(DirectoryConfig::GetSeedModelsDirectory(), R"(Seed Models\)");
    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "SampleDir", R"(C:\My Models)");
    EXPECT_EQ(DirectoryConfig::GetSampleModelsDirectory(), R"(C:\My Models\Sample Models\)");
}

TEST_F(DataDirectories, OfTheUserStartInAFolderThatIsMadeButThoseOfTheMachineDoNot)
{
    const std::filesystem::path missing = m_machine.Root() / "new" / "folder";
    m_machine.MoveShellFolder(ShellFolder::LocalAppData, missing.string());
    DirectoryConfig::GetLocalAppDataDirectory();
    m_machine.MoveShellFolder(ShellFolder::ProgramData, (missing / "deeper").string());
    EXPECT_THAT(DirectoryConfig::GetFraxoSectionDatabaseDirectory,
                ThrowsMessage<std::runtime_error>(StrEq("Could not get ProgramData folder")));
    EXPECT_TRUE(IsEmptyFolder(missing));

    WriteFile(m_machine.Root() / "file", "");
    m_machine.MoveShellFolder(ShellFolder::LocalAppData, (m_machine.Root() / "file" / "below").string());
    EXPECT_THAT(DirectoryConfig::GetProjectConfigurationDirectory,
                ThrowsMessage<std::runtime_error>(StrEq("Could not get LocalAppData folder")));
}

class GetFraxoSectionDatabaseDirectory : public InstallationTest
{
protected:
    GetFraxoSectionDatabaseDirectory() { RemoveSections(); } // of a crashed run
    ~GetFraxoSectionDatabaseDirectory() override { RemoveSections(); }

    void RemoveSections() const { std::filesystem::remove(NativePath(m_besideExecutable).parent_path()); }

    const std::string m_besideExecutable =
        (DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8() + R"(\Sections\)").ToStdString();
};

TEST_F(GetFraxoSectionDatabaseDirectory, IsTheVariablesThenThatBesideTheExecutableThenTheMachines)
{
    const std::string variable = "FRAXO_PRO_SECTIONS_DIRECTORY";
    EXPECT_EQ(DirectoryConfig::GetFraxoSectionDatabaseDirectory(),
              m_machine.ProductFolder(ShellFolder::ProgramData) + R"(Sections\)");
    std::filesystem::create_directory(NativePath(m_besideExecutable));
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    EXPECT_EQ(DirectoryConfig::GetFraxoSectionDatabaseDirectory(), m_besideExecutable);

    m_machine.SetEnvironment(variable, R"(C:\no/such\.\..\folder)"); // normalised, neither checked nor ended
    EXPECT_EQ(DirectoryConfig::GetFraxoSectionDatabaseDirectory(), R"(C:\no\folder)");
    m_machine.SetEnvironment(variable, ""); // is not set
    EXPECT_EQ(DirectoryConfig::GetFraxoSectionDatabaseDirectory(), m_besideExecutable);
}

using GetProjectConfigurationDirectory = InstallationTest;

TEST_F(GetProjectConfigurationDirectory, IsNamedAfterTheProjectInUse)
{
    const std::string userData = m_machine.ProductFolder(ShellFolder::LocalAppData);
    UseProject("abc", false);
    EXPECT_EQ(DirectoryConfig::GetProjectConfigurationDirectory(), userData + R"(Default\)");
    UseProject("", true);
    EXPECT_EQ(DirectoryConfig::GetProjectConfigurationDirectory(), userData + R"(Default\)");
    UseProject("abc", true);
    EXPECT_EQ(DirectoryConfig::GetProjectConfigurationDirectory(), userData + R"(abc\)");
    UseProject(R"(..\..\abc)", true); // not checked, see docs/security.md
    EXPECT_EQ(DirectoryConfig::GetProjectConfigurationDirectory(), userData + R"(..\..\abc\)");
}
} // namespace
