// What other products leave in the registry and on the disk, and what the library makes of it.

#include <string>
#include <utility>

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
    /// What is answered once a product has recorded this text.
    Quenlor::Utf8String After(const std::string& key, const char* name, const std::string& text,
                              Quenlor::Utf8String (*ask)(), HKEY root = HKEY_LOCAL_MACHINE) const
    {
        m_machine.WriteText(root, key, name, text);
        return ask();
    }
};

TEST_F(ExternalApplications, AreFoundByWhatTheyRecord)
{
    const std::string dir = m_machine.Folder("Programs");
    for (const char* const file :
         {"sbuilder.exe", "1.exe", "2.exe", "3.exe", "4.exe", "Planner.2.exe", ".exe", "MSInfo32.exe"})
        WriteFile(NativePath(dir + file), "program");
    const std::string adapt = R"(SOFTWARE\Adapt\BUILDERPLUSPATH)";
    const std::string lum = R"(SOFTWARE\Lum International\Lum Concept\Integration)";
    const std::string planWin = R"(SOFTWARE\Wow6432Node\BuildingPlanner)";
    const std::string win = R"(SOFTWARE\Omnitech\DesconWin)";
    // clang-format off
    EXPECT_EQ(After(adapt, "", dir, Settings::GetAdaptBuilderExePath), dir + "sbuilder.exe");
    EXPECT_EQ(After(adapt, "", R"(X:\gone)", Settings::GetAdaptBuilderExePath, HKEY_CURRENT_USER), ""); // the machine's is hidden
    // From the last choice to the first, which goes in the end.
    EXPECT_EQ(After(lum, "LatestConceptExePath", dir + "1.exe", Settings::GetLumConceptExePath, HKEY_CURRENT_USER), dir + "1.exe");
    EXPECT_EQ(After(lum, "LatestConceptExePath", dir + "2.exe", Settings::GetLumConceptExePath), dir + "2.exe");
    EXPECT_EQ(After(lum, "UserFraxoLinkExePath", dir + "3.exe", Settings::GetLumConceptExePath, HKEY_CURRENT_USER), dir + "3.exe");
    EXPECT_EQ(After(lum, "UserFraxoLinkExePath", dir + "4.exe", Settings::GetLumConceptExePath), dir + "4.exe");
    EXPECT_EQ(After(lum, "UserFraxoLinkExePath", R"(X:\a.exe)", Settings::GetLumConceptExePath), dir + "3.exe");
    // Needs folder, name and file.
    EXPECT_EQ(After(planWin, "ProductName", "Planner.2", Settings::GetPlanWinExePath), "");
    EXPECT_EQ(After(planWin, "InstallPath", dir, Settings::GetPlanWinExePath), dir + "Planner.2.exe");
    EXPECT_EQ(After(planWin, "ProductName", "Planner.3", Settings::GetPlanWinExePath), "");
    EXPECT_EQ(After(planWin, "ProductName", "", Settings::GetPlanWinExePath), "");
    EXPECT_EQ(After(win, "AppFullPath", R"(X:\a.exe)", Settings::GetDesconWinExePath), "");
    EXPECT_EQ(After(win, "AppFullPath", dir + "1.exe", Settings::GetDesconWinExePath), dir + "1.exe");
    EXPECT_EQ(After(R"(Software\Microsoft\Shared Tools Location)", "MSInfo", dir, Settings::GetMsInfo32ExePath), dir + "MSInfo32.exe");
    // clang-format on
    m_machine.WriteData(HKEY_LOCAL_MACHINE, R"(Software\Microsoft\Shared Tools\MSInfo)", "Path", REG_EXPAND_SZ,
                        dir + "1.exe\0"s);
    EXPECT_EQ(Settings::GetMsInfo32ExePath(), dir + "1.exe");
    EXPECT_TRUE(Settings::IsDesconWinInstalled());
    EXPECT_FALSE(Settings::IsDesconBraceInstalled());
    for (const char* const text : {"TRUE", "True", "1"})
    {
        m_machine.WriteText(HKEY_LOCAL_MACHINE, win, "DESCONWIN_LRFD_METRIC", text);
        EXPECT_EQ(Settings::GetDesconWinLrfdMetricCode(), text == "TRUE"s) << text;
    }
}

TEST_F(ExternalApplications, IncludeTheNewestDocumentClient)
{
    const std::string first = R"(SOFTWARE\Quenlor\Plexora Explorer\10.00)";
    const std::string last = R"(SOFTWARE\Wow6432Node\Quenlor\Plexora Explorer\08.11)";
    const auto version = Settings::GetPlexoraExplorerVersionString;
    EXPECT_FALSE(Settings::IsPlexoraExplorerInstalled());
    EXPECT_EQ(After(last, "Version", "08.11.09.100", version), "08.11.09.100");
    EXPECT_EQ(After(R"(SOFTWARE\Quenlor\Plexora Explorer\08.11)", "Version", "08.11.09", version), "08.11.09");
    EXPECT_TRUE(Settings::IsPlexoraExplorerInstalled());
    EXPECT_FALSE(Settings::IsMultiplePlexoraExplorerInstalled());
    EXPECT_EQ(After(first, "Version", "10.00.04", version), "10.00.04");
    EXPECT_TRUE(Settings::IsMultiplePlexoraExplorerInstalled());
    const std::string folder = m_machine.Folder("Plexora");
    EXPECT_EQ(After(last, "PathName", folder, Settings::GetPlexoraExplorerExecutablePath), "") << "without its folder";
    m_machine.Folder("Plexora/bin");
    EXPECT_EQ(Settings::GetPlexoraExplorerExecutablePath(), folder + "bin");

    EXPECT_EQ(Settings::GetPlexoraExplorerVersionTokens().Build, 4);
    m_machine.WriteText(HKEY_LOCAL_MACHINE, first, "Version", "10.00.04.100");
    EXPECT_EQ(Settings::GetPlexoraExplorerVersionTokens().Major, 0) << "of four parts none is taken";
}

/// HKEY_CLASSES_ROOT is shared with the machine: a product that it really has is left alone.
TEST_F(ExternalApplications, IncludeFoundationAndWord)
{
    const auto keys = {"Fraxo.foundation", "Word.Application"};
    for (const char* const key : keys)
    {
        if (m_machine.HasKey(HKEY_CLASSES_ROOT, key))
            GTEST_SKIP() << "this machine has " << key;
    }
    const auto foundation = [] { return Settings::GetFraxoFoundationExePath(false); };
    EXPECT_FALSE(Settings::IsWordInstalled());
    EXPECT_EQ(After(R"(Fraxo.foundation\7.0)", "ExeName", R"(X:\gone\seven.exe)", foundation, HKEY_CLASSES_ROOT),
              R"(X:\gone\seven.exe)");
    EXPECT_EQ(After("Fraxo.foundation", "LastVersion", "8.1", foundation, HKEY_CLASSES_ROOT), "");
    for (const auto& [progId, number] : {std::pair{"Word.Application.16", 16}, {"16", 0}, {"Word.Application.", 0}})
    {
        m_machine.WriteText(HKEY_CLASSES_ROOT, R"(Word.Application\CurVer)", "", progId);
        EXPECT_EQ(Settings::GetWordVersionNumber(), number) << progId;
    }
    EXPECT_TRUE(Settings::IsWordInstalled());
    for (const char* const key : keys)
        ::RegDeleteTreeA(HKEY_CLASSES_ROOT, key);
}

TEST(RunningPrograms, AreFoundByFileName)
{
    using Quenlor::QnFileName;
    QnFileName self;
    ASSERT_EQ(Quenlor::QnGetModuleFileName(self, nullptr), Quenlor::QuenlorStatus::Success);
    const Quenlor::WString name = QnFileName::GetFileNameWithoutExtension(self.GetName());
    const Quenlor::Utf8String upper = QnFileName{name.ToUpperCase()}.GetNameUtf8();

    EXPECT_TRUE(Settings::IsExeRunning(self.GetNameUtf8()));
    EXPECT_TRUE(Settings::IsExeRunning(R"(X:\elsewhere\)" + upper)) << "the system cuts it to 15 letters";
    EXPECT_FALSE(Settings::IsExeRunning(upper + ".other"));
}
} // namespace
