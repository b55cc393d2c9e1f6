#include "UserSettingsConfig.h"

#include "DirectoryConfig.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
// clang-format off
Utf8String UserSettingsConfig::GetStrucLinkExePath()                      { return DirectoryConfig::GetPluginsDirectory() + R"(StrucLink\StrucLink.exe)"; }
Utf8String UserSettingsConfig::GetConnectionTagLinkExePath()              { return DirectoryConfig::GetPluginsDirectory() + R"(ConnectionTagLink\ConnectionTagLink.exe)"; }

Utf8String UserSettingsConfig::GetScriptEditorExePath()                   { return DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\Quenlor.Fraxo.ScriptEditor.exe)"; }
Utf8String UserSettingsConfig::GetInputEditorExePath()                    { return DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\Quenlor.Fraxo.Editor.exe)"; }
Utf8String UserSettingsConfig::GetFProRCExePath()                         { return DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\RCDesigner\FProRC.exe)"; }
Utf8String UserSettingsConfig::GetStWizardExePath()                       { return DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\StWizard.exe)"; }
Utf8String UserSettingsConfig::GetSectionWizardExePath()                  { return DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\SectionWizard\Section.exe)"; }
Utf8String UserSettingsConfig::GetFPPMExePath()                           { return DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\FPPM\Program\SXP.exe)"; }
Utf8String UserSettingsConfig::GetChineseSteelDesignExePath()             { return DirectoryConfig::GetFRAXOProRoot() + R"(SSDD\LiteSSDD.exe)"; } // not below FRAXO
Utf8String UserSettingsConfig::GetAutoLoadCombinationRuleManagerExePath() { return DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\Quenlor.Fraxo.AutoLoadCombRuleManager.exe)"; }
Utf8String UserSettingsConfig::GetOpenFraxoIdeHelpDocumentPath()          { return DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\WinWrap\ww10_000.chm)"; }
Utf8String UserSettingsConfig::GetFraxoProReadMePath()                    { return DirectoryConfig::GetFRAXOProRoot() + R"(ReadMe\index.html)"; } // not with the help

Utf8String UserSettingsConfig::GetFraxoProHelpDocumentPath()              { return DirectoryConfig::GetHelpDirectory() + "index.html"; }
Utf8String UserSettingsConfig::GetReleaseReportDocumentPath()             { return DirectoryConfig::GetHelpDirectory() + "GUID-7056F280-CE75-456F-8A42-D0EFBBB8745A.html"; }
Utf8String UserSettingsConfig::GetOpenFraxoHelpDocumentPath()             { return DirectoryConfig::GetHelpDirectory() + R"(OSAPP\index.html)"; }
Utf8String UserSettingsConfig::SectionWizardHelpDocumentPath()            { return DirectoryConfig::GetHelpDirectory() + "SectionBuilder.html"; }
// clang-format on
} // namespace Quenlor::Fraxo::SharedUtilities::Native
