#include "DirectoryConfig.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <tuple>
#include <utility>

#include <Platform/Win32.h>
#include <gmock/gmock.h>

#include "VersionConfig.h"
#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using namespace Quenlor;
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

class RootDirectory : public InstallationTest
{
protected:
    /// Whether this program runs from output when the variable has this value.
    bool IsOutput(const std::string& root)
    {
        m_machine.SetEnvironment("FRAXO_PRO_ROOT_DIRECTORY", root);
        return DirectoryConfig::IsRunningFromOutput();
    }

    /// The folder of this test program, which a build output root has to contain.
    const std::string m_folder = DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8().ToStdString();
};

TEST_F(RootDirectory, IsTheRecordedOne)
{
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), "") << "nothing below it is at the root of a drive";
    for (const auto& [recorded, root] :
         {std::pair{R"(C:\Fraxo Pro)", R"(C:\Fraxo Pro\)"}, std::pair{R"(D:\)", R"(D:\)"}})
    {
        Install(recorded);
        EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), root); // nothing is cached
    }
}

TEST_F(RootDirectory, IsTheVariablesWhenThisProgramRunsFromThere)
{
    const Utf8String capitals = QnFileName{WString{m_folder.c_str(), false}.ToUpperCase()}.GetNameUtf8();
    for (const std::string& spelling : {capitals.ToStdString(), m_folder + R"(\.)", m_folder + R"(\sub\..\)", m_folder})
        EXPECT_TRUE(IsOutput(spelling)) << spelling;
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), Utf8String{m_folder + '\\'});
    EXPECT_FALSE(IsOutput(m_folder + R"(\sub)"));
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), "");
}

TEST_F(RootDirectory, MayBeNamedByDots)
{
    for (const char* const dots : {".", R"(sub\..)"})
    {
        std::filesystem::current_path(m_machine.Root());
        EXPECT_FALSE(IsOutput(dots));
        std::filesystem::current_path(NativePath(m_folder));
        EXPECT_TRUE(IsOutput(dots));
    }
}

TEST_F(RootDirectory, MayBeALink)
{
    const std::filesystem::path link = m_machine.Root() / "link";
    std::error_code error; // not every system lets every user make links
    create_directory_symlink(NativePath(m_folder), link, error);
    EXPECT_EQ(IsOutput(link.string()), !error);
}

using DataDirectories = InstallationTest;

/// One getter for each base.
void ExpectFoldersIn(const Bases& bases)
{
    EXPECT_EQ(DirectoryConfig::GetGBSteelDesignDirectory(), bases.machineData + R"(GBSteelDesign\)");
    EXPECT_EQ(DirectoryConfig::GetStrucLinkAppDataDirectory(), bases.userData + R"(Default\PlugIns\StrucLink\)");
    EXPECT_EQ(DirectoryConfig::GetPluginsDirectory(), bases.root + R"(FRAXO\Plugins\)");
}

TEST_F(DataDirectories, AreInTheInstallationOrTheOutput)
{
    EXPECT_EQ(DirectoryConfig::GetHelpDirectory(), R"(Help\)") << "not installed";
    EXPECT_EQ(DirectoryConfig::GetSeedModelsDirectory(), R"(Seed Models\)");
    ExpectFoldersIn(Install());
    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "SampleDir", R"(C:\My Models)");
    EXPECT_EQ(DirectoryConfig::GetSampleModelsDirectory(), R"(C:\My Models\Sample Models\)");
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "ProgramData"));
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "LocalAppData"));

    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    m_machine.BreakShellFolder(ShellFolder::LocalAppData);
    const Bases output = RunFromOutput();
    ExpectFoldersIn(output);
    EXPECT_EQ(DirectoryConfig::GetFraxoSectionDatabaseDirectory(), output.machineData + R"(Sections\)");
    EXPECT_EQ(DirectoryConfig::GetSampleModelsDirectory(), output.root + R"(Samples\Sample Models\)");
}

TEST_F(DataDirectories, AreMadeOnlyForTheUser)
{
    const std::filesystem::path missing = m_machine.Root() / "new" / "folder";
    m_machine.MoveShellFolder(ShellFolder::LocalAppData, missing.string());
    DirectoryConfig::GetLocalAppDataDirectory();
    EXPECT_TRUE(IsEmptyFolder(missing));
    m_machine.MoveShellFolder(ShellFolder::ProgramData, (missing / "deeper").string());
    EXPECT_THAT(DirectoryConfig::GetProgramDataDirectory,
                ThrowsMessage<std::runtime_error>(StrEq("Could not get ProgramData folder")));
    EXPECT_TRUE(IsEmptyFolder(missing));
}

TEST_F(DataDirectories, OfSectionsAreTheVariablesElseBesideTheProgram)
{
    const auto sections = DirectoryConfig::GetFraxoSectionDatabaseDirectory;
    const std::string beside = DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8().ToStdString() + R"(\Sections\)";
    std::filesystem::remove(NativePath(beside).parent_path()); // of a crashed run
    EXPECT_EQ(sections(), m_machine.ProductFolder(ShellFolder::ProgramData) + R"(Sections\)") << "the machine's";
    std::filesystem::create_directory(NativePath(beside));
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    EXPECT_EQ(sections(), beside);
    m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", R"(C:\no/such\.\..\folder)");
    EXPECT_EQ(sections(), R"(C:\no\folder)") << "normalised, neither checked nor ended";
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

TEST(ProductVersion, IsAllZerosWithoutAResource)
{
    EXPECT_EQ(VersionConfig::GetProductVersion(), "00.00.00.00");
}

// On a machine whose ANSI code page is 1252.

constexpr char Kanji[] = "\xE6\x97\xA5\xE6\x9C\xAC";

TEST(FileNameChecks, AskTwoQuestions)
{
    const ScratchMachine machine;
    const struct
    {
        const char* name;
        bool hasUnicodeChars;
        int isSupported;
    } rows[] = {{"", false, 1},
                {"Portal Frame.frx", false, 1},
                {"\xC3\xA9", false, 0}, // in 1252, but longer in UTF-8
                {"\xC4\x80", true, 0}}; // has a look-alike in 1252
    for (const auto& [name, hasUnicodeChars, isSupported] : rows)
    {
        EXPECT_EQ(DirectoryConfig::HasUnicodeChars(name) != 0, hasUnicodeChars) << name;
        EXPECT_EQ(DirectoryConfig::IsFileNameSupportedInCurrentCulture(name), isSupported) << name;
    }
}

class GetNormalizedFileName : public ::testing::Test
{
protected:
    static std::string Make(const std::string& path)
    {
        WriteFile(NativePath(path), "");
        return path;
    }

    static Utf8String Normalise(const std::string& path)
    {
        return DirectoryConfig::GetNormalizedFileName(QnFileName{path});
    }

    /// As the system says; on a volume without short names the path itself.
    static Utf8String ShortForm(const std::string& path)
    {
        wchar_t shortForm[MAX_PATH] = {};
        EXPECT_NE(::GetShortPathNameW(QnFileName{path}.GetName(), shortForm, MAX_PATH), 0U);
        return QnFileName{shortForm}.GetNameUtf8();
    }

    ScratchMachine m_machine;
    const std::string m_models = m_machine.Folder("some models");
    const std::string m_kanji = m_machine.Folder(Kanji);
};

TEST_F(GetNormalizedFileName, ShortensOnlyWhatIsUnsupported)
{
    const std::string plain = Make(m_models + "a portal frame.frx");
    const std::string namedInKanji = Make(m_models + Kanji + ".frx");
    EXPECT_EQ(Normalise(plain), plain);
    EXPECT_EQ(Normalise(namedInKanji), ShortForm(namedInKanji));
    EXPECT_EQ(Normalise(Make(m_kanji + "a portal frame.frx")), ShortForm(m_kanji) + "a portal frame.frx");
    EXPECT_EQ(Normalise(m_kanji), ShortForm(m_kanji));
}

TEST_F(GetNormalizedFileName, IsEmptyForMissingAndLongPaths)
{
    EXPECT_EQ(Normalise(m_kanji + Kanji), "");
    const std::string folder = m_machine.Folder(std::string(100, 'x'));
    const std::string longest = folder + std::string(MAX_PATH - 1 - folder.length(), 'y');
    EXPECT_EQ(Normalise(Make(longest)), longest);
    EXPECT_EQ(Normalise(Make(longest + 'y')), "");
}
} // namespace
