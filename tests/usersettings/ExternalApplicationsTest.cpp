// What other products leave in the registry and on the disk, and what the library makes of it.

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
    struct Step
    {
        std::string key;
        const char* name;
        std::string text; // is recorded, and then asked:
        Quenlor::Utf8String (*ask)();
        std::string answer;
        HKEY root = HKEY_LOCAL_MACHINE;
    };

    void Take(const std::vector<Step>& steps) const
    {
        for (const auto& [key, name, text, ask, answer, root] : steps)
        {
            m_machine.WriteText(root, key, name, text);
            EXPECT_EQ(ask(), answer) << key << '\\' << name << " = " << text;
        }
    }

    /// A folder of this machine that has files of these names.
    std::string FolderOf(std::initializer_list<const char*> files) const
    {
        for (const char* const file : files)
            WriteFile(m_machine.Root() / "Programs" / file, "program");
        return m_machine.Folder("Programs");
    }
};

TEST_F(ExternalApplications, AreFoundByWhatTheyRecord)
{
    const std::string dir = FolderOf({"sbuilder.exe", "1.exe", "2.exe", "3.exe", "4.exe", "Planner.2.exe", ".exe"});
    const std::string adapt = R"(SOFTWARE\Adapt\BUILDERPLUSPATH)";
    const std::string lum = R"(SOFTWARE\Lum International\Lum Concept\Integration)";
    const std::string planWin = R"(SOFTWARE\Wow6432Node\BuildingPlanner)";
    const std::string krdc = R"(SOFTWARE\Wow6432Node\Quenlor\KRDC)";
    const std::string win = R"(SOFTWARE\Omnitech\DesconWin)";
    const std::string brace = R"(SOFTWARE\Omnitech\DesconBrace)";
    // clang-format off
    Take({
        {adapt, "", dir,             Settings::GetAdaptBuilderExePath, dir + "sbuilder.exe"},
        {adapt, "", R"(X:\gone)",    Settings::GetAdaptBuilderExePath, "", HKEY_CURRENT_USER}, // the machine's is hidden
        {adapt, "", R"(X:\gone)",    Settings::GetAdaptBuilderPath, R"(X:\gone)", HKEY_CURRENT_USER},
        // From the last choice to the first, which goes in the end.
        {lum, "LatestConceptExePath", dir + "1.exe", Settings::GetLumConceptExePath, dir + "1.exe", HKEY_CURRENT_USER},
        {lum, "LatestConceptExePath", dir + "2.exe", Settings::GetLumConceptExePath, dir + "2.exe"},
        {lum, "UserFraxoLinkExePath", dir + "3.exe", Settings::GetLumConceptExePath, dir + "3.exe", HKEY_CURRENT_USER},
        {lum, "UserFraxoLinkExePath", dir + "4.exe", Settings::GetLumConceptExePath, dir + "4.exe"},
        {lum, "UserFraxoLinkExePath", R"(X:\a.exe)", Settings::GetLumConceptExePath, dir + "3.exe"},
        // Needs folder, name and file.
        {planWin, "ProductName", "Planner.2", Settings::GetPlanWinExePath, ""},
        {planWin, "InstallPath", dir,         Settings::GetPlanWinExePath, dir + "Planner.2.exe"},
        {planWin, "ProductName", "Planner.3", Settings::GetPlanWinExePath, ""},
        {planWin, "ProductName", "",          Settings::GetPlanWinExePath, ""},
        {planWin, "Version",     "4.02",      Settings::GetPlanWinVersion, "4.02"},
        {krdc,    "Version",     "5",         Settings::GetKRDCVersion, "5"},
        {krdc,    "ProductName", "1",         Settings::GetKRDCExePath, ""},
        {krdc,    "InstallPath", dir,         Settings::GetKRDCExePath, dir + "1.exe"},
        {win,   "AppFullPath", R"(X:\a.exe)", Settings::GetDesconWinExePath, ""},
        {brace, "AppFullPath", dir + "1.exe", Settings::GetDesconBraceExePath, dir + "1.exe"},
        {R"(SOFTWARE\Quenlor Systems\Technip Pipe Rack)", "ExeName", dir + "1.exe", Settings::GetTechnipExePath, dir + "1.exe"},
        {R"(Software\Microsoft\Shared Tools Location)", "MSInfo", dir, Settings::GetMsInfo32ExePath, ""}, // no file
    });
    // clang-format on
    EXPECT_TRUE(Settings::IsDesconBraceInstalled());
    EXPECT_FALSE(Settings::IsDesconWinInstalled());
    for (const char* const text : {"TRUE", "True", "TRUE ", "1", ""})
    {
        m_machine.WriteText(HKEY_LOCAL_MACHINE, win, "DESCONWIN_LRFD_METRIC", text);
        m_machine.WriteText(HKEY_LOCAL_MACHINE, brace, "DESCON_BRACE_ASD", text);
        EXPECT_EQ(Settings::GetDesconWinLrfdMetricCode(), text == "TRUE"s) << text;
        EXPECT_EQ(Settings::GetDesconBraceAsdCode(), text == "TRUE"s) << text;
    }

    FolderOf({"MSInfo32.exe"});
    for (const auto& [path, found] : {std::pair{R"(%SystemRoot%\msinfo32.exe)"s, dir + "MSInfo32.exe"}, // not expanded
                                      std::pair{dir + "1.exe", dir + "1.exe"}})
    {
        m_machine.WriteData(HKEY_LOCAL_MACHINE, R"(Software\Microsoft\Shared Tools\MSInfo)", "Path", REG_EXPAND_SZ,
                            path + '\0');
        EXPECT_EQ(Settings::GetMsInfo32ExePath(), found);
    }
}

TEST_F(ExternalApplications, IncludeTheNewestDocumentClient)
{
    const std::string first = R"(SOFTWARE\Quenlor\Plexora Explorer\10.00)";
    const std::string last = R"(SOFTWARE\Wow6432Node\Quenlor\Plexora Explorer\08.11)";
    const auto version = Settings::GetPlexoraExplorerVersionString;
    EXPECT_FALSE(Settings::IsPlexoraExplorerInstalled());
    Take({{last, "Version", "08.11.09.100", version, "08.11.09.100"},
          {R"(SOFTWARE\Quenlor\Plexora Explorer\08.11)", "Version", "08.11.09", version, "08.11.09"}});
    EXPECT_TRUE(Settings::IsPlexoraExplorerInstalled());
    EXPECT_FALSE(Settings::IsMultiplePlexoraExplorerInstalled());
    Take({{R"(SOFTWARE\Wow6432Node\Quenlor\Plexora Explorer\10.00)", "Version", "10.00.03", version, "10.00.03"},
          {first, "Version", "10.00.04", version, "10.00.04"},
          {first, "Version", "", version, "10.00.03"},
          {last, "PathName", m_machine.Folder("Plexora"), Settings::GetPlexoraExplorerExecutablePath, ""}});
    EXPECT_TRUE(Settings::IsMultiplePlexoraExplorerInstalled());
    m_machine.Folder("Plexora/bin");
    EXPECT_EQ(Settings::GetPlexoraExplorerExecutablePath(), m_machine.Folder("Plexora") + "bin");

    const std::pair<const char*, std::vector<int>> rows[] = {
        {"10.00.03", {10, 0, 3}}, {"08.11.09.100", {0, 0, 0}}, {"a.-1.7b", {0, -1, 7}}, {"..5", {0, 0, 5}}};
    for (const auto& [text, numbers] : rows)
    {
        m_machine.WriteText(HKEY_LOCAL_MACHINE, first, "Version", text);
        const auto tokens = Settings::GetPlexoraExplorerVersionTokens();
        EXPECT_EQ((std::vector{tokens.Major, tokens.Minor, tokens.Build}), numbers) << text;
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

TEST_F(ProductClasses, NameFoundationAndWord)
{
    const auto foundation = [] { return Settings::GetFraxoFoundationExePath(false); };
    const auto advanced = [] { return Settings::GetFraxoFoundationExePath(true); };
    EXPECT_FALSE(Settings::IsWordInstalled());
    Take({{R"(Fraxo.foundation\7.0)", "ExeName", R"(X:\gone\seven.exe)", foundation, R"(X:\gone\seven.exe)",
           HKEY_CLASSES_ROOT},
          {R"(FRAXO Foundation Adv\5.0)", "ExeName", "five.exe", advanced, "five.exe", HKEY_CLASSES_ROOT},
          {"Fraxo.foundation", "LastVersion", "8.1", foundation, "", HKEY_CLASSES_ROOT}});
    constexpr std::pair<const char*, int> rows[] = {
        {"Word.Application.16", 16}, {"Word.Application.Word.Application.16", 0}, {"16", 0}, {"Word.Application.", 0}};
    for (const auto& [progId, number] : rows)
    {
        Take({{R"(Word.Application\CurVer)", "", progId, Settings::GetWordProgID, progId, HKEY_CLASSES_ROOT}});
        EXPECT_EQ(Settings::GetWordVersionNumber(), number) << progId;
    }
    EXPECT_TRUE(Settings::IsWordInstalled());
}

TEST_F(ExternalApplications, OfOurOwnAreBelowTheRoot)
{
    const Bases bases = Install();
    EXPECT_EQ(Settings::GetChineseSteelDesignExePath(), bases.root + R"(SSDD\LiteSSDD.exe)");
    EXPECT_EQ(Settings::GetStrucLinkExePath(), bases.root + R"(FRAXO\Plugins\StrucLink\StrucLink.exe)");
    EXPECT_EQ(Settings::SectionWizardHelpDocumentPath(), bases.root + R"(Help\SectionBuilder.html)");
}

TEST(RunningPrograms, AreFoundByFileName)
{
    using Quenlor::QnFileName;
    QnFileName self;
    ASSERT_EQ(Quenlor::QnGetModuleFileName(self, nullptr), Quenlor::QuenlorStatus::Success);
    const Quenlor::WString name = QnFileName::GetFileNameWithoutExtension(self.GetName());
    ASSERT_GT(name.length(), 15U) << "the length at which the system cuts the name of a process";
    const Quenlor::Utf8String upper = QnFileName{name.ToUpperCase()}.GetNameUtf8();

    EXPECT_TRUE(Settings::IsExeRunning(self.GetNameUtf8()));
    EXPECT_TRUE(Settings::IsExeRunning(R"(X:\elsewhere\)" + upper));
    EXPECT_FALSE(Settings::IsExeRunning(upper + ".other"));
    EXPECT_FALSE(Settings::IsExeRunning(upper.ToStdString().substr(0, 15)));
    EXPECT_FALSE(Settings::IsExeRunning(""));
}
} // namespace
