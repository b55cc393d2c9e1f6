#pragma once

#include <Quenlor/QnFileName.h>
#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// Where the parts of this release are on this machine.
///
/// Results are UTF-8 unless they are a QnFileName. A ...Directory result as text ends in a separator, so a file name
/// can be appended as plain text, except where a member says otherwise; a ...Path result names a file. Nothing is
/// created and existence is not checked, except where a member says so. Without an installation record, results below
/// the installation root are relative.
///
/// To open a file, ask for the path that this system takes. Windows' narrow functions take the ANSI code page, not
/// UTF-8, and Linux has no backslashes.
/// ```cpp
/// const Utf8String page = DirectoryConfig::GetHelpDirectory() + "index.html";
/// std::ifstream file{ToNativePath(page)}; // not page.c_str()
/// ```
///
/// Nothing is cached: every call asks the environment, the registry and the shell again.
/// Thread-safety: no shared state. Any thread may call.
class SHAREDUTILITIES_EXPORT DirectoryConfig final
{
public:
    DirectoryConfig() = delete;

    /// Whether this process runs from a developer's build output instead of an installation: the environment variable
    /// FRAXO_PRO_ROOT_DIRECTORY is set and its path, or its real path without symbolic links, occurs in the
    /// executable's, letter case and spelling aside.
    static bool IsRunningFromOutput();

    /// The installation root. When running from output the value of FRAXO_PRO_ROOT_DIRECTORY, otherwise "RootDir" of
    /// the installation record, the key `FraxoPro\<release>` of HKEY_CLASSES_ROOT. Empty, and so relative, without a
    /// record.
    static Utf8String GetFRAXOProRoot();

    /// The folder of the process's executable, without a trailing separator unless it is a root.
    static QnFileName GetCurrentExeDirectory();

    /// @name The two bases below the shell's folders
    /// The members further down throw what their base throws.
    /// @{

    /// The folder for data shared by all users of this machine; `AppData\` below the root when running from output.
    /// @throws std::runtime_error saying "Could not get ProgramData folder" when the shell cannot name it. Never when
    ///         running from output: the shell is not asked then.
    static Utf8String GetProgramDataDirectory();

    /// The folder for this user's data; `LocalAppData\` below the root when running from output. The shell's own folder
    /// is created if missing, the product's folder below it is not.
    /// @throws std::runtime_error saying "Could not get LocalAppData folder", as GetProgramDataDirectory does
    static Utf8String GetLocalAppDataDirectory();
    /// @}

    static Utf8String GetProfileFolderDirectory(); ///< The same as GetProgramDataDirectory.
    static Utf8String GetConfigurationDirectory(); ///< `Default\` in this user's data.

    /// The section database: the value of FRAXO_PRO_SECTIONS_DIRECTORY, normalised but neither checked nor ended by a
    /// separator; else `Sections\` beside the executable if it exists; else `Sections\` in the machine's data.
    static Utf8String GetFraxoSectionDatabaseDirectory();

    /// The folder of the default connected project in this user's data, named by the project's id; `Default\` when
    /// there is none or it is not in use (see UserSettingsConfig).
    static Utf8String GetProjectConfigurationDirectory();

    /// @name Models
    /// Below "SampleDir" of the installation record; in `Samples\` below the root when running from output. Relative
    /// without a record.
    /// @{
    static Utf8String GetSampleModelsDirectory();       ///< `Sample Models\`
    static Utf8String GetVerificationModelsDirectory(); ///< `Verification Models\`
    static Utf8String GetSeedModelsDirectory();         ///< `Seed Models\`
    /// @}

    /// @name Below the installation root
    /// @{
    static Utf8String GetPluginsDirectory();           ///< `FRAXO\Plugins\`
    static Utf8String GetLumConnectionHtmlDirectory(); ///< `FRAXO\LumConnection\Html\`
    static Utf8String GetRoseDatabaseDirectory();      ///< `Resource\CIS2Support\`
    static Utf8String GetRCDesignerDirectory();        ///< `FRAXO\RCDesigner\`
    static Utf8String GetHelpDirectory();              ///< `Help\`
    static Utf8String GetSectionWizardDirectory();     ///< `FRAXO\SectionWizard\`
    static Utf8String GetFRAXOProEngineDirectory();    ///< `FRAXO\FProFraxo\`
    static Utf8String GetFRAXOProEngineExePath();      ///< `FProFraxo.exe` in the engine's folder.
    static Utf8String GetFRAXOProEngineStlExePath();   ///< `FProFraxoStl.exe` in the engine's folder.
    /// @}

    /// @name In GetConfigurationDirectory()
    /// @{
    static Utf8String GetLumConnectionConnectionTemplatesDirectory(); ///< `LumConnection\ConnectionTemplates\`
    static Utf8String GetLumConnectionDatabaseDirectory();            ///< `LumConnection\Database\`
    static Utf8String GetLumConnectionImagesDirectory();              ///< `LumConnection\Images\`
    /// @}

    /// @name In GetLocalAppDataDirectory()
    /// "PlugIns" has a capital I here: both spellings are on users' disks.
    /// @{
    static Utf8String GetEditorAppDataDirectory();            ///< `Default\Editor\`
    static Utf8String GetStrucLinkAppDataDirectory();         ///< `Default\PlugIns\StrucLink\`
    static Utf8String GetPipeLinkAppDataDirectory();          ///< `Default\PlugIns\PipeLink\`
    static Utf8String GetConnectionTagLinkAppDataDirectory(); ///< `Default\PlugIns\ConnectionTagLink\`
    static Utf8String GetStWizardAppDataDirectory();          ///< `Default\StWizard\`
    static Utf8String GetCrashReportsDirectory();             ///< `CrashReports\`
    /// @}

    static Utf8String GetGBSteelDesignDirectory(); ///< `GBSteelDesign\` in GetProgramDataDirectory().

    /// @name For components that open files through the narrow functions
    /// These take the process's ANSI code page. None of the members throws.
    /// @{

    /// Whether `name` has a character that the ANSI code page cannot represent, even if it has a similar one.
    /// @return 0 when it has none
    static int HasUnicodeChars(const Utf8String& name);

    /// Whether `name` takes as many bytes in the ANSI code page as in UTF-8: ASCII does, and the empty name; a
    /// character that takes more in UTF-8 does not, even if the code page has it.
    /// @return 1 or 0
    static int IsFileNameSupportedInCurrentCulture(const Utf8String& name);

    /// The path of an existing file or folder in a form that such components can open. The long form when all of it is
    /// supported in the sense above. The short (8.3) form of the whole when the file name is not; when only the folder
    /// is not, the short form of the folder with the long file name. On a volume without short names the
    /// long ones take their place.
    /// @return empty when the path does not exist, or when its long form has more than 259 characters
    static Utf8String GetNormalizedFileName(const QnFileName& path);
    /// @}
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
