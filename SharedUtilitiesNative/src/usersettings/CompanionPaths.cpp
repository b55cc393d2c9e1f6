#include "UserSettingsConfig.h"

#include "DirectoryConfig.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
Utf8String InRoot(const char* file)
{
    return DirectoryConfig::GetFRAXOProRoot() + file;
}

Utf8String InPlugins(const char* file)
{
    return DirectoryConfig::GetPluginsDirectory() + file;
}

Utf8String InHelp(const char* file)
{
    return DirectoryConfig::GetHelpDirectory() + file;
}
} // namespace

// clang-format off
Utf8String UserSettingsConfig::GetStrucLinkExePath()                      { return InPlugins(R"(StrucLink\StrucLink.exe)"); }
Utf8String UserSettingsConfig::GetConnectionTagLinkExePath()              { return InPlugins(R"(ConnectionTagLink\ConnectionTagLink.exe)"); }

Utf8String UserSettingsConfig::GetScriptEditorExePath()                   { return InRoot(R"(FRAXO\Quenlor.Fraxo.ScriptEditor.exe)"); }
Utf8String UserSettingsConfig::GetInputEditorExePath()                    { return InRoot(R"(FRAXO\Quenlor.Fraxo.Editor.exe)"); }
Utf8String UserSettingsConfig::GetFProRCExePath()                         { return InRoot(R"(FRAXO\RCDesigner\FProRC.exe)"); }
Utf8String UserSettingsConfig::GetStWizardExePath()                       { return InRoot(R"(FRAXO\StWizard.exe)"); }
Utf8String UserSettingsConfig::GetSectionWizardExePath()                  { return InRoot(R"(FRAXO\SectionWizard\Section.exe)"); }
Utf8String UserSettingsConfig::GetFPPMExePath()                           { return InRoot(R"(FRAXO\FPPM\Program\SXP.exe)"); }
Utf8String UserSettingsConfig::GetChineseSteelDesignExePath()             { return InRoot(R"(SSDD\LiteSSDD.exe)"); } // not below FRAXO
Utf8String UserSettingsConfig::GetAutoLoadCombinationRuleManagerExePath() { return InRoot(R"(FRAXO\Quenlor.Fraxo.AutoLoadCombRuleManager.exe)"); }
Utf8String UserSettingsConfig::GetOpenFraxoIdeHelpDocumentPath()          { return InRoot(R"(FRAXO\WinWrap\ww10_000.chm)"); }
Utf8String UserSettingsConfig::GetFraxoProReadMePath()                    { return InRoot(R"(ReadMe\index.html)"); } // not with the help

Utf8String UserSettingsConfig::GetFraxoProHelpDocumentPath()              { return InHelp("index.html"); }
Utf8String UserSettingsConfig::GetReleaseReportDocumentPath()             { return InHelp("GUID-7056F280-CE75-456F-8A42-D0EFBBB8745A.html"); }
Utf8String UserSettingsConfig::GetOpenFraxoHelpDocumentPath()             { return InHelp(R"(OSAPP\index.html)"); }
Utf8String UserSettingsConfig::SectionWizardHelpDocumentPath()            { return InHelp("SectionBuilder.html"); }
// clang-format on
} // namespace Quenlor::Fraxo::SharedUtilities::Native
