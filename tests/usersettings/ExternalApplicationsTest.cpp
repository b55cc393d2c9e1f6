// What other products leave in the registry and on the disk, and what the library makes of it.

#include <string>
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
};

TEST_F(ExternalApplications, AreFoundByWhatTheyRecord)
{
    const std::string dir = m_machine.Folder("Programs");
    for (const char* const file : {"sbuilder.exe", "1.exe", "2.exe", "3.exe", "4.exe", "Planner.2.exe", ".exe"})
        WriteFile(NativePath(dir + file), "program");
    const std::string adapt = R"(SOFTWARE\Adapt\BUILDERPLUSPATH)";
    const std::string lum = R"(SOFTWARE\Lum International\Lum Concept\Integration)";
    const std::string planWin = R"(SOFTWARE\Wow6432Node\BuildingPlanner)";
    const std::string win = R"(SOFTWARE\Omnitech\DesconWin)";
    // clang-format off
    Take({
        {adapt, "", dir,             Settings::GetAdaptBuilderExePath, dir + "sbuilder.exe"},
        {adapt, "", R"(X:\gone)",    Settings::GetAdaptBuilderExePath, "", HKEY_CURRENT_USER}, // the machine's is hidden
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
        {win, "AppFullPath", R"(X:\a.exe)", Settings::GetDesconWinExePath, ""},
        {win, "AppFullPath", dir + "1.exe", Settings::GetDesconWinExePath, dir + "1.exe"},
    });
    // clang-format on
    EXPECT_TRUE(Settings::IsDesconWinInstalled());
    EXPECT_FALSE(Settings::IsDesconBraceInstalled());
    for (const char* const text : {"TRUE", "True", "1"})
    {
        m_machine.WriteText(HKEY_LOCAL_MACHINE, win, "DESCONWIN_LRFD_METRIC", text);
        EXPECT_EQ(Settings::GetDesconWinLrfdMetricCode(), text == "TRUE"s) << text;
    }
}

TEST_F(ExternalApplications, IncludeTheSystemInformation)
{
    const std::string dir = m_machine.Folder("Programs");
    m_machine.WriteText(HKEY_LOCAL_MACHINE, R"(Software\Microsoft\Shared Tools Location)", "MSInfo", dir);
    EXPECT_EQ(Settings::GetMsInfo32ExePath(), "");
    for (const char* const file : {"MSInfo32.exe", "other.exe"})
        WriteFile(NativePath(dir + file), "program");
    const auto record = [this](const std::string& path)
    {
        m_machine.WriteData(HKEY_LOCAL_MACHINE, R"(Software\Microsoft\Shared Tools\MSInfo)", "Path", REG_EXPAND_SZ,
                            path + '\0');
    };
    record(R"(%SystemRoot%\msinfo32.exe)");
    EXPECT_EQ(Settings::GetMsInfo32ExePath(), dir + "MSInfo32.exe") << "the variable is not expanded";
    record(dir + "other.exe");
    EXPECT_EQ(Settings::GetMsInfo32ExePath(), dir + "other.exe");
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
          {last, "PathName", m_machine.Folder("Plexora"), Settings::GetPlexoraExplorerExecutablePath, ""}});
    EXPECT_TRUE(Settings::IsMultiplePlexoraExplorerInstalled());
    m_machine.Folder("Plexora/bin");
    EXPECT_EQ(Settings::GetPlexoraExplorerExecutablePath(), m_machine.Folder("Plexora") + "bin");

    EXPECT_EQ(Settings::GetPlexoraExplorerVersionTokens().Build, 4);
    m_machine.WriteText(HKEY_LOCAL_MACHINE, first, "Version", "10.00.04.100");
    EXPECT_EQ(Settings::GetPlexoraExplorerVersionTokens().Major, 0) << "of four parts none is taken";
}

/// HKEY_CLASSES_ROOT is shared with the machine: a product that it really has is left alone.
TEST_F(ExternalApplications, IncludeFoundationAndWord)
{
    const auto keys = {"Fraxo.foundation", "FRAXO Foundation Adv", "Word.Application"};
    for (const char* const key : keys)
    {
        if (m_machine.HasKey(HKEY_CLASSES_ROOT, key))
            GTEST_SKIP() << "this machine has " << key;
    }
    const auto foundation = [] { return Settings::GetFraxoFoundationExePath(false); };
    const auto advanced = [] { return Settings::GetFraxoFoundationExePath(true); };
    EXPECT_FALSE(Settings::IsWordInstalled());
    Take({{R"(Fraxo.foundation\7.0)", "ExeName", R"(X:\gone\seven.exe)", foundation, R"(X:\gone\seven.exe)",
           HKEY_CLASSES_ROOT},
          {R"(FRAXO Foundation Adv\5.0)", "ExeName", "five.exe", advanced, "five.exe", HKEY_CLASSES_ROOT},
          {"Fraxo.foundation", "LastVersion", "8.1", foundation, "", HKEY_CLASSES_ROOT}});
    for (const auto& [progId, number] : {std::pair{"Word.Application.16", 16}, {"16", 0}, {"Word.Application.", 0}})
    {
        Take({{R"(Word.Application\CurVer)", "", progId, Settings::GetWordProgID, progId, HKEY_CLASSES_ROOT}});
        EXPECT_EQ(Settings::GetWordVersionNumber(), number) << progId;
    }
    EXPECT_TRUE(Settings::IsWordInstalled());
    for (const char* const key : keys)
        m_machine.DeleteKey(HKEY_CLASSES_ROOT, key);
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
}
} // namespace
