#pragma once

#include <Quenlor/QnFileName.h>
#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// Where the INI files and a few other data files are.
///
/// ```cpp
/// IniReader reader;
/// reader.LoadFile(IniConfig::GetFraxoProIniPath());
/// std::ifstream file{ToNativePath(IniConfig::GetBDeckLiveLoadVehiclePath())}; // other readers need a native path
/// const std::string tool = IniConfig::GetUserToolPath(1).ToStdString(); // without the NULs that pad the answer
/// ```
///
/// Results are UTF-8 paths. A member that says "copied from" first makes the user's file from that installed default
/// if it is missing; an existing file is never touched. The other members neither check nor create anything. Nothing
/// is cached.
///
/// All throw std::runtime_error when the shell cannot name the user's or the machine's folder (see DirectoryConfig).
/// Those that copy also throw it, with a message that starts with the default's file name, when
/// - the default is missing: " file not found. The installation of FRAXO.Pro may be corrupt.",
/// - the user's folder cannot be made: " file target directory could not be created.",
/// - the copy fails: " file could not be copied.".
///
/// No shared state: any thread may call, and processes that copy the same file at once all get a whole one.
class SHAREDUTILITIES_EXPORT IniConfig final
{
public:
    IniConfig() = delete;

    static Utf8String GetPluginsIniPath(); ///< The user's plug-in list; copied from the plug-ins folder's.

    /// The product's INI file of this release, `FraxoPro<release>.ini`; copied from the machine's data.
    static Utf8String GetFraxoProIniPath();

    static Utf8String GetCodesIniPath();       ///< The design codes in the current language; copied from the machine's.
    static Utf8String GetNativeCodesIniPath(); ///< The machine's file that GetCodesIniPath copies.
    static Utf8String GetDesignCodesIniDirectory(); ///< LanguageHelper::GetCurrentLanguageDirectory().

    /// The connected project's own sections; copied from the section database. Where that is the value of
    /// FRAXO_PRO_SECTIONS_DIRECTORY, the file name is appended to it directly: the variable needs a separator at its
    /// end.
    static Utf8String GetDbSectionCustomIniPath();
    static Utf8String GetDbSectionCustomDbiPath(); ///< The index beside it, which is never copied.

    static Utf8String GetBDeckLiveLoadVehiclePath(); ///< The user's vehicles; copied from the installation's.

    static Utf8String GetSteelAutoDrafterBaseStyleIniPath(); ///< `SCGA-DrgEnv.INI` of the machine.
    static Utf8String GetSteelAutoDrafterUserStyleIniPath(); ///< The user's `Style.ini`; copied from the base style.

    static Utf8String GetFraxoCommandTblPath();    ///< `FRAXO\Fraxread.tbl` below the root.
    static Utf8String GetFraxoMessageTblPath();    ///< `FRAXO\Fraxmess.tbl` below the root.
    static Utf8String GetStWizardDefaultStpPath(); ///< The user's `default.stp`; copied from the installation's.
    static Utf8String GetGBSteelIniPath();         ///< The user's; never copied.
    static Utf8String GetIS875CitiesIniPath();     ///< The cities in the current language; copied from the machine's.

    /// The command line of a user's tool: `Command#n` in section `USER-TOOLS` of the plug-in list, below the plug-ins
    /// folder unless it is absolute; only that folder when the key is missing.
    /// The result is padded: 260 bytes of value and NULs follow the folder, if any; a longer value is cut to 259.
    static Utf8String GetUserToolPath(int n);
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
