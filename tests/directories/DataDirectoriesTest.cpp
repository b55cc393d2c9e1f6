#include "DirectoryConfig.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <tuple>

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

TEST_F(DataDirectories, AreInTheInstallationOrTheOutput)
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

TEST_F(DataDirectories, AreRelativeWithoutAnInstallation)
{
    EXPECT_EQ(DirectoryConfig::GetHelpDirectory(), R"(Help\)");
    EXPECT_EQ(DirectoryConfig::GetSeedModelsDirectory(), R"(Seed Models\)");
    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "SampleDir", R"(C:\My Models)");
    EXPECT_EQ(DirectoryConfig::GetSampleModelsDirectory(), R"(C:\My Models\Sample Models\)");
}

TEST_F(DataDirectories, AreMadeOnlyForTheUser)
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

TEST_F(DataDirectories, OfSectionsAreTheVariablesOrBesideTheProgramOrTheMachines)
{
    const auto sections = DirectoryConfig::GetFraxoSectionDatabaseDirectory;
    const std::string beside = DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8().ToStdString() + R"(\Sections\)";
    std::filesystem::remove(NativePath(beside).parent_path()); // of a crashed run
    EXPECT_EQ(sections(), m_machine.ProductFolder(ShellFolder::ProgramData) + R"(Sections\)");
    std::filesystem::create_directory(NativePath(beside));
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    EXPECT_EQ(sections(), beside);

    m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", R"(C:\no/such\.\..\folder)");
    EXPECT_EQ(sections(), R"(C:\no\folder)") << "normalised, neither checked nor ended";
    m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", ""); // is not set
    EXPECT_EQ(sections(), beside);
    std::filesystem::remove(NativePath(beside).parent_path());
}

TEST_F(DataDirectories, OfAProjectHaveItsName)
{
    const std::string userData = m_machine.ProductFolder(ShellFolder::LocalAppData);
    constexpr char NotChecked[] = R"(..\..\abc)"; // see docs/security.md
    for (const auto& [id, isInUse, folder] : {std::tuple{"abc", false, "Default"}, std::tuple{"", true, "Default"},
                                              std::tuple{"abc", true, "abc"}, std::tuple{NotChecked, true, NotChecked}})
    {
        UseProject(id, isInUse);
        EXPECT_EQ(DirectoryConfig::GetProjectConfigurationDirectory(), userData + folder + '\\');
    }
}
} // namespace
