#include "DirectoryConfig.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include <Platform/Win32.h>
#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using namespace Quenlor;
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using ::testing::ThrowsMessage;

using RootDirectory = InstallationTest;

TEST_F(RootDirectory, IsTheRecordedOne)
{
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), "") << "nothing below it is at the root of a drive";
    Install(R"(C:\Fraxo Pro)");
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), R"(C:\Fraxo Pro\)");
    Install(R"(D:\)"); // nothing is cached
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), R"(D:\)");
}

TEST_F(RootDirectory, IsTheVariablesWhenThisProgramRunsFromThere)
{
    const auto isOutput = [this](const std::string& root)
    {
        m_machine.SetEnvironment("FRAXO_PRO_ROOT_DIRECTORY", root);
        return DirectoryConfig::IsRunningFromOutput();
    };
    const std::string folder = DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8().ToStdString();
    const Utf8String capitals = QnFileName{WString{folder.c_str(), false}.ToUpperCase()}.GetNameUtf8();
    for (const std::string& spelling : {capitals.ToStdString(), folder + R"(\sub\..\)", folder})
        EXPECT_TRUE(isOutput(spelling)) << spelling;
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), Utf8String{folder + '\\'});
    EXPECT_FALSE(isOutput(folder + R"(\sub)"));
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), "");

    std::filesystem::current_path(m_machine.Root());
    EXPECT_FALSE(isOutput(".")) << "although the path of a program may have a dot";
    std::filesystem::current_path(NativePath(folder));
    EXPECT_TRUE(isOutput("."));

    const std::filesystem::path link = m_machine.Root() / "link";
    std::error_code error; // not every system lets every user make links
    create_directory_symlink(NativePath(folder), link, error);
    EXPECT_EQ(isOutput(link.string()), !error);
}

using DataDirectories = InstallationTest;

TEST_F(DataDirectories, AreInTheInstallationOrTheOutput)
{
    const auto expectFoldersIn = [](const Bases& bases) // a getter for each base
    {
        EXPECT_EQ(DirectoryConfig::GetGBSteelDesignDirectory(), bases.machineData + R"(GBSteelDesign\)");
        EXPECT_EQ(DirectoryConfig::GetStrucLinkAppDataDirectory(), bases.userData + R"(Default\PlugIns\StrucLink\)");
        EXPECT_EQ(DirectoryConfig::GetPluginsDirectory(), bases.root + R"(FRAXO\Plugins\)");
    };
    EXPECT_EQ(DirectoryConfig::GetSeedModelsDirectory(), R"(Seed Models\)") << "not installed";
    expectFoldersIn(Install());
    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "SampleDir", R"(C:\My Models)");
    EXPECT_EQ(DirectoryConfig::GetSampleModelsDirectory(), R"(C:\My Models\Sample Models\)");

    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    m_machine.BreakShellFolder(ShellFolder::LocalAppData);
    const Bases output = RunFromOutput();
    expectFoldersIn(output);
    EXPECT_EQ(DirectoryConfig::GetFraxoSectionDatabaseDirectory(), output.machineData + R"(Sections\)");
    EXPECT_EQ(DirectoryConfig::GetSampleModelsDirectory(), output.root + R"(Samples\Sample Models\)");
}

TEST_F(DataDirectories, AreMadeOnlyForTheUser)
{
    const std::filesystem::path missing = m_machine.Root() / "new" / "folder";
    m_machine.MoveShellFolder(ShellFolder::LocalAppData, missing.string());
    DirectoryConfig::GetLocalAppDataDirectory();
    m_machine.MoveShellFolder(ShellFolder::ProgramData, (missing / "deeper").string());
    EXPECT_THAT(DirectoryConfig::GetProgramDataDirectory,
                ThrowsMessage<std::runtime_error>("Could not get ProgramData folder"));
    EXPECT_TRUE(is_empty(missing));
}

TEST_F(DataDirectories, OfSectionsAreTheVariablesElseBesideTheProgram)
{
    const auto sections = DirectoryConfig::GetFraxoSectionDatabaseDirectory;
    const std::string beside = DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8().ToStdString() + R"(\Sections\)";
    std::filesystem::remove(NativePath(beside).parent_path()); // of a crashed run
    EXPECT_EQ(sections(), m_machine.ProductFolder(ShellFolder::ProgramData) + R"(Sections\)") << "the machine's";
    std::filesystem::create_directory(NativePath(beside));
    EXPECT_EQ(sections(), beside);
    m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", R"(C:\no/such\.\..\folder)");
    EXPECT_EQ(sections(), R"(C:\no\folder)") << "normalised, neither checked nor ended";
    std::filesystem::remove(NativePath(beside).parent_path());
}

TEST_F(DataDirectories, OfAProjectHaveItsName)
{
    const std::string userData = m_machine.ProductFolder(ShellFolder::LocalAppData);
    const auto projects = DirectoryConfig::GetProjectConfigurationDirectory;
    UseProject("abc", false);
    EXPECT_EQ(projects(), userData + R"(Default\)");
    UseProject("", true);
    EXPECT_EQ(projects(), userData + R"(Default\)");
    UseProject(R"(..\..\abc)", true);
    EXPECT_EQ(projects(), userData + R"(..\..\abc\)") << "not checked, see docs/security.md";
}

// On a machine whose ANSI code page is 1252.

constexpr char Kanji[] = "\xE6\x97\xA5\xE6\x9C\xAC";

TEST(FileNameChecks, AskTwoQuestions)
{
    const ScratchMachine machine;
    EXPECT_EQ(DirectoryConfig::IsFileNameSupportedInCurrentCulture("Portal Frame.frx"), 1);
    EXPECT_EQ(DirectoryConfig::HasUnicodeChars("\xC3\xA9"), 0);
    EXPECT_EQ(DirectoryConfig::IsFileNameSupportedInCurrentCulture("\xC3\xA9"), 0) << "longer in UTF-8 than in 1252";
    EXPECT_NE(DirectoryConfig::HasUnicodeChars("\xC4\x80"), 0) << "although there is a look-alike in 1252";
}

TEST(GetNormalizedFileName, ShortensOnlyWhatIsUnsupported)
{
    const ScratchMachine machine;
    const std::string models = machine.Folder("some models"), kanji = machine.Folder(Kanji);
    const std::string plain = models + "a portal frame.frx", namedInKanji = models + Kanji + ".frx";
    const std::string inKanji = kanji + "a portal frame.frx";
    const std::string tooLong = models + std::string(MAX_PATH - models.length(), 'y');
    for (const std::string& path : {plain, namedInKanji, inKanji, tooLong})
        WriteFile(NativePath(path), "");
    const auto normalise = [](const std::string& path)
    { return DirectoryConfig::GetNormalizedFileName(QnFileName{path}); };
    const auto shortForm = [](const std::string& path) // on a volume without short names the path itself
    {
        wchar_t buffer[MAX_PATH] = {};
        EXPECT_NE(::GetShortPathNameW(QnFileName{path}.GetName(), buffer, MAX_PATH), 0U);
        return QnFileName{buffer}.GetNameUtf8();
    };
    EXPECT_EQ(normalise(plain), plain);
    EXPECT_EQ(normalise(namedInKanji), shortForm(namedInKanji));
    EXPECT_EQ(normalise(inKanji), shortForm(kanji) + "a portal frame.frx");
    EXPECT_EQ(normalise(kanji), shortForm(kanji));
    EXPECT_EQ(normalise(kanji + Kanji), "") << "missing";
    EXPECT_EQ(normalise(tooLong), "");
}
} // namespace
