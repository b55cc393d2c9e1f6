#include "XmlConfig.h"

#include "DirectoryConfig.h"
#include "configfiles/UserFile.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
constexpr char ToolbarName[] = "FProQATItemSettings.xml";
constexpr char ConnectionTagName[] = "ConnectionTagFile.xml";
constexpr char EditorMruName[] = "Quenlor.Fraxo.Editor.Mru.xml";

Utf8String InEditorData(const char* name)
{
    return DirectoryConfig::GetEditorAppDataDirectory() + name;
}
} // namespace

// "Plugins" with a small i here, although DirectoryConfig spells the same folder "PlugIns".
// clang-format off
UserFile QuickAccessToolbarXml() { return {InUserDefaults(ToolbarName), XmlConfig::GetApplicationQATFilePath()}; }
UserFile ConnectionTagLinkXml()  { return {InUserDefaults(R"(Plugins\ConnectionTagLink\)") + ConnectionTagName, XmlConfig::GetApplicationConnectionTagLinkFilePath(), UserFile::Origin::PlugIn}; }

Utf8String XmlConfig::GetUserQATFilePath()                      { return Provide(QuickAccessToolbarXml()); }
Utf8String XmlConfig::GetUserConnectionTagLinkFilePath()        { return Provide(ConnectionTagLinkXml()); }

Utf8String XmlConfig::GetApplicationQATFilePath()               { return DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\)" + ToolbarName; }
Utf8String XmlConfig::GetApplicationConnectionTagLinkFilePath() { return DirectoryConfig::GetPluginsDirectory() + R"(ConnectionTagLink\Data\)" + ConnectionTagName; }
Utf8String XmlConfig::GetMRUListFilePath()                      { return InUserDefaults("FProMRUFiles.xml"); }
Utf8String XmlConfig::GetEditorSettingsFilePath()               { return InEditorData("Quenlor.Fraxo.Editor.Settings.xml"); }
Utf8String XmlConfig::GetViewerSettingsFilePath()               { return InEditorData("Quenlor.Fraxo.Viewer.Settings.xml"); }
Utf8String XmlConfig::GetFileTypeSettingsFilePath()             { return InEditorData("Quenlor.Fraxo.Editor.FileTypeSettings.xml"); }
Utf8String XmlConfig::GetEditorMRUListFilePath()                { return InEditorData(EditorMruName); }
Utf8String XmlConfig::GetScriptEditorMRUListFilePath()          { return InUserDefaults(R"(ScriptEditor\)") + EditorMruName; }
Utf8String XmlConfig::GetSteelAutoDrafterSectionListFilePath()  { return DirectoryConfig::GetProgramDataDirectory() + R"(SteelAutoDrafter\SectionList.xml)"; }
// clang-format on
} // namespace Quenlor::Fraxo::SharedUtilities::Native
