#pragma once

#include <Quenlor/QnFileName.h>
#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// Where the XML settings files are. Their content is up to the applications.
///
/// ```cpp
/// const Utf8String path = XmlConfig::GetMRUListFilePath();
/// if (QnFileName::DoesPathExist(QnFileName{path}.GetName()))
///     std::ifstream file{ToNativePath(path)}; // not path.c_str(): Windows takes no UTF-8 there, Linux no backslashes
/// ```
///
/// Results are UTF-8 paths. The two members that say "copied from" provide the user's file as IniConfig's do; the
/// others neither check nor create anything. All throw std::runtime_error when the shell cannot name a folder.
class SHAREDUTILITIES_EXPORT XmlConfig final
{
public:
    XmlConfig() = delete;

    /// The user's quick-access toolbar; copied from the application's. @throws std::runtime_error as IniConfig says
    static Utf8String GetUserQATFilePath();
    static Utf8String GetApplicationQATFilePath(); ///< `FRAXO\FProQATItemSettings.xml` below the root.

    static Utf8String GetMRUListFilePath();             ///< The recent files.
    static Utf8String GetEditorSettingsFilePath();      ///< In the editor's folder.
    static Utf8String GetViewerSettingsFilePath();      ///< In the editor's folder.
    static Utf8String GetFileTypeSettingsFilePath();    ///< In the editor's folder.
    static Utf8String GetEditorMRUListFilePath();       ///< The editor's recent files.
    static Utf8String GetScriptEditorMRUListFilePath(); ///< The script editor's: the same name in a folder of its own.

    static Utf8String GetSteelAutoDrafterSectionListFilePath(); ///< In the machine's data.

    /// The user's connection tags; copied from the plug-in's. @throws std::runtime_error as IniConfig says, but with
    /// the message "ConnectionTagFile.xml file not found.": the file comes with a plug-in, not with the product
    static Utf8String GetUserConnectionTagLinkFilePath();
    static Utf8String GetApplicationConnectionTagLinkFilePath(); ///< Below the plug-ins folder.
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
