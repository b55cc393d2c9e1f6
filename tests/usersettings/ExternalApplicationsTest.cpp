// What other products leave in the registry and on the disk, and what the library makes of it.

#include <cctype>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "UserSettingsConfig.h"
#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using namespace std::string_literals;
using Settings = Quenlor::Fraxo::SharedUtilities::Native::UserSettingsConfig;

class ExternalApplications : public InstallationTest
{
protected:
    /// A file of this machine, made with its folders. Spelled as the library spells paths.
    std::string Program(const std::string& name) const
    {
        const std::string path = m_machine.Folder("Programs") + name;
        WriteFile(NativePath(path), "program");
        return path;
    }

    std::string Folder(const char* name) const { return m_machine.Folder(name); }

    void Record(const char* key, const char* name, std::string_view text, HKEY root = HKEY_LOCAL_MACHINE) const
    {
        m_machine.WriteText(root, key, name, text);
    }
};

TEST_F(ExternalApplications, AreAbsentOnAnEmptyMachine)
{
    m_machine.Folder("bin"); // what nothing recorded must not be joined to: the current directory
    WriteFile(m_machine.Root() / "sbuilder.exe", "");
    WriteFile(m_machine.Root() / "MSInfo32.exe", "");
    std::filesystem::current_path(m_machine.Root());
    for (const auto find : {Settings::GetAdaptBuilderExePath, Settings::GetMsInfo32ExePath, Settings::GetTechnipExePath,
                            Settings::GetPlexoraExplorerExecutablePath})
        EXPECT_EQ(find(), "");
    std::filesystem::current_path(m_machine.Root().parent_path());
    EXPECT_FALSE(Settings::IsPlexoraExplorerInstalled());
}

TEST_F(ExternalApplications, PreferTheUsersAdapt)
{
    constexpr char Key[] = R"(SOFTWARE\Adapt\BUILDERPLUSPATH)";
    Program("sbuilder.exe");
    Record(Key, "", Folder("Programs"));
    EXPECT_EQ(Settings::GetAdaptBuilderExePath(), Folder("Programs") + "sbuilder.exe");

    Record(Key, "", R"(X:\gone)", HKEY_CURRENT_USER);
    EXPECT_EQ(Settings::GetAdaptBuilderPath(), R"(X:\gone)");
    EXPECT_EQ(Settings::GetAdaptBuilderExePath(), "");
}

TEST_F(ExternalApplications, PreferTheLinkedThenTheLatestLumConcept)
{
    constexpr char Key[] = R"(SOFTWARE\Lum International\Lum Concept\Integration)";
    constexpr char Linked[] = "UserFraxoLinkExePath";
    constexpr char Latest[] = "LatestConceptExePath";
    // from the last choice to the first
    for (const auto& [name, root] : {std::pair{Latest, HKEY_CURRENT_USER}, std::pair{Latest, HKEY_LOCAL_MACHINE},
                                     std::pair{Linked, HKEY_CURRENT_USER}, std::pair{Linked, HKEY_LOCAL_MACHINE}})
    {
        const std::string program = Program((root == HKEY_CURRENT_USER ? "user's "s : "machine's "s) + name);
        Record(Key, name, program, root);
        EXPECT_EQ(Settings::GetLumConceptExePath(), program);
    }
    Record(Key, Linked, R"(X:\deleted.exe)");
    EXPECT_EQ(Settings::GetLumConceptExePath(), Program("user's "s + Linked));
}

TEST_F(ExternalApplications, InAnInstallFolderNeedFolderNameAndFile)
{
    const struct
    {
        const char* key;
        Quenlor::Utf8String (*find)();
        Quenlor::Utf8String (*version)();
    } products[] = {
        {R"(SOFTWARE\Wow6432Node\BuildingPlanner)", Settings::GetPlanWinExePath, Settings::GetPlanWinVersion},
        {R"(SOFTWARE\Wow6432Node\Quenlor\KRDC)", Settings::GetKRDCExePath, Settings::GetKRDCVersion},
    };
    for (const auto& [key, find, version] : products)
    {
        Record(key, "ProductName", "Planner.2");
        EXPECT_EQ(find(), "") << "no folder";
        Record(key, "InstallPath", Folder("Programs"));
        EXPECT_EQ(find(), "") << "no file";
        const std::string program = Program("Planner.2.exe");
        EXPECT_EQ(find(), program);
        Program(".exe");
        Record(key, "ProductName", "");
        EXPECT_EQ(find(), "") << "no name";
        Record(key, "Version", "4.02");
        EXPECT_EQ(version(), "4.02");
        std::filesystem::remove(NativePath(program));
    }
}

/// HKEY_CLASSES_ROOT is shared with the machine: a product that it really has is left alone.
class ProductClasses : public ExternalApplications
{
protected:
    void SetUp() override
    {
        for (const char* const key : Keys)
        {
            if (m_machine.HasKey(HKEY_CLASSES_ROOT, key))
                GTEST_SKIP() << "this machine has " << key;
        }
    }

    void TearDown() override
    {
        for (const char* const key : Keys)
        {
            if (!IsSkipped())
                m_machine.DeleteKey(HKEY_CLASSES_ROOT, key);
        }
    }

private:
    static constexpr const char* Keys[] = {"Fraxo.foundation", "FRAXO Foundation Adv", "Word.Application"};
};

TEST_F(ProductClasses, NameFoundationUnchecked)
{
    Record(R"(Fraxo.foundation\7.0)", "ExeName", R"(X:\gone\seven.exe)", HKEY_CLASSES_ROOT);
    Record(R"(FRAXO Foundation Adv\5.0)", "ExeName", "five.exe", HKEY_CLASSES_ROOT);
    EXPECT_EQ(Settings::GetFraxoFoundationExePath(false), R"(X:\gone\seven.exe)");
    EXPECT_EQ(Settings::GetFraxoFoundationExePath(true), "five.exe");
    Record("Fraxo.foundation", "LastVersion", "8.1", HKEY_CLASSES_ROOT);
    EXPECT_EQ(Settings::GetFraxoFoundationExePath(false), "");
}

TEST_F(ProductClasses, NumberWord)
{
    constexpr std::pair<const char*, int> rows[] = {
        {"Word.Application.16", 16}, {"Word.Application.Word.Application.16", 0}, {"16", 0},
        {"Word.Application.", 0},    {"Word.Application.\xEF\xBC\x91", 0}, // a full-width digit
    };
    EXPECT_FALSE(Settings::IsWordInstalled());
    for (const auto& [progId, number] : rows)
    {
        Record(R"(Word.Application\CurVer)", "", progId, HKEY_CLASSES_ROOT);
        EXPECT_EQ(Settings::GetWordProgID(), progId);
        EXPECT_EQ(Settings::GetWordVersionNumber(), number) << progId;
        EXPECT_TRUE(Settings::IsWordInstalled());
    }
}

TEST_F(ExternalApplications, FindSystemInformationByPathElseInItsFolder)
{
    constexpr char Key[] = R"(Software\Microsoft\Shared Tools\MSInfo)";
    Record(R"(Software\Microsoft\Shared Tools Location)", "MSInfo", Folder("Programs"));
    EXPECT_EQ(Settings::GetMsInfo32ExePath(), "");
    const std::string second = Program("MSInfo32.exe");
    const std::string first = Program("other.exe");
    m_machine.WriteData(HKEY_LOCAL_MACHINE, Key, "Path", REG_EXPAND_SZ, R"(%SystemRoot%\msinfo32.exe)"s + '\0');
    EXPECT_EQ(Settings::GetMsInfo32ExePath(), second) << "references are not expanded";
    m_machine.WriteData(HKEY_LOCAL_MACHINE, Key, "Path", REG_EXPAND_SZ, first + '\0');
    EXPECT_EQ(Settings::GetMsInfo32ExePath(), first);
}

TEST_F(ExternalApplications, SwitchDesconOnInCapitals)
{
    constexpr char Win[] = R"(SOFTWARE\Omnitech\DesconWin)";
    constexpr char Brace[] = R"(SOFTWARE\Omnitech\DesconBrace)";
    Record(Win, "AppFullPath", R"(X:\deleted.exe)");
    Record(Brace, "AppFullPath", Program("Brace.exe"));
    EXPECT_EQ(Settings::GetDesconBraceExePath(), Program("Brace.exe"));
    EXPECT_TRUE(Settings::IsDesconBraceInstalled());
    EXPECT_FALSE(Settings::IsDesconWinInstalled());

    for (const char* const text : {"TRUE", "True", "TRUE ", "1", ""})
    {
        Record(Win, "DESCONWIN_LRFD_METRIC", text);
        Record(Brace, "DESCON_BRACE_ASD", text);
        EXPECT_EQ(Settings::GetDesconWinLrfdMetricCode(), text == "TRUE"s) << text;
        EXPECT_EQ(Settings::GetDesconBraceAsdCode(), text == "TRUE"s) << text;
    }
    EXPECT_FALSE(Settings::GetDesconWinLrfdCode());
}

TEST_F(ExternalApplications, PreferTheNewerNativeDocumentClient)
{
    constexpr std::pair<const char*, const char*> lines[] = {
        // from the last choice to the first
        {R"(SOFTWARE\Wow6432Node\Quenlor\Plexora Explorer\08.11)", "08.11.09.100"},
        {R"(SOFTWARE\Quenlor\Plexora Explorer\08.11)", "08.11.09"},
        {R"(SOFTWARE\Wow6432Node\Quenlor\Plexora Explorer\10.00)", "10.00.03"},
        {R"(SOFTWARE\Quenlor\Plexora Explorer\10.00)", "10.00.04"},
    };
    for (const auto& [key, version] : lines)
    {
        Record(key, "Version", version);
        EXPECT_EQ(Settings::GetPlexoraExplorerVersionString(), version);
        EXPECT_EQ(Settings::IsMultiplePlexoraExplorerInstalled(), version[0] == '1') << key;
    }
    Record(lines[3].first, "Version", ""); // as if it were missing
    EXPECT_EQ(Settings::GetPlexoraExplorerVersionString(), "10.00.03");

    Record(lines[0].first, "PathName", Folder("Plexora"));
    EXPECT_EQ(Settings::GetPlexoraExplorerExecutablePath(), "") << "no bin folder";
    const std::string bin = Folder("Plexora/bin");
    EXPECT_EQ(Settings::GetPlexoraExplorerExecutablePath().ToStdString() + '\\', Folder("Plexora") + R"(bin\)");
}

TEST_F(ExternalApplications, NumberTheDocumentClientInThreePartsOrNone)
{
    const std::pair<const char*, std::vector<int>> rows[] = {
        {"10.00.03", {10, 0, 3}}, {"08.11.09.100", {0, 0, 0}}, {"10.2", {0, 0, 0}},
        {"a.-1.7b", {0, -1, 7}},  {"..5", {0, 0, 5}},          {"99999999999.1.1", {2147483647, 1, 1}},
    };
    for (const auto& [version, numbers] : rows)
    {
        Record(R"(SOFTWARE\Quenlor\Plexora Explorer\10.00)", "Version", version);
        const auto tokens = Settings::GetPlexoraExplorerVersionTokens();
        EXPECT_EQ((std::vector{tokens.Major, tokens.Minor, tokens.Build}), numbers) << version;
    }
}

TEST_F(ExternalApplications, OfOurOwnAreBelowTheRoot)
{
    EXPECT_EQ(Settings::GetFraxoProHelpDocumentPath(), R"(Help\index.html)") << "without an installation";
    const Bases bases = Install();
    EXPECT_EQ(Settings::GetScriptEditorExePath(), bases.root + R"(FRAXO\Quenlor.Fraxo.ScriptEditor.exe)");
    EXPECT_EQ(Settings::GetStrucLinkExePath(), bases.root + R"(FRAXO\Plugins\StrucLink\StrucLink.exe)");
    EXPECT_EQ(Settings::SectionWizardHelpDocumentPath(), bases.root + R"(Help\SectionBuilder.html)");
}

TEST(RunningPrograms, AreFoundByFileName)
{
    using Quenlor::QnFileName;
    QnFileName self;
    ASSERT_EQ(Quenlor::QnGetModuleFileName(self, nullptr), Quenlor::QuenlorStatus::Success);
    const std::string name = QnFileName{QnFileName::BaseName, self.GetName()}.GetNameUtf8().ToStdString();
    ASSERT_GT(name.length(), 15U) << "the length at which the system cuts the name of a process";
    std::string upper = name;
    for (char& character : upper)
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));

    EXPECT_TRUE(Settings::IsExeRunning(self.GetNameUtf8()));
    EXPECT_TRUE(Settings::IsExeRunning(R"(X:\elsewhere\)" + upper));
    EXPECT_FALSE(Settings::IsExeRunning(name + ".other"));
    EXPECT_FALSE(Settings::IsExeRunning(name.substr(0, 15)));
    EXPECT_FALSE(Settings::IsExeRunning(""));
}
} // namespace
