#pragma once

#include <cstdint>

#include <Quenlor/QnFileName.h>
#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The version of the document-management client: of 10.00.03 these are 10, 0 and 3.
struct PlexoraExplorerVersion
{
    std::int32_t Major = 0; ///< The release line.
    std::int32_t Minor = 0; ///< The second part.
    std::int32_t Build = 0; ///< The third part.
};

/// The user's preferences, shared by all applications of the family, and where companion applications are.
///
/// Settings live in the registry, below RegistryHelper::GetCurrentUserKey() of HKEY_CURRENT_USER unless a member says
/// otherwise. Nothing is cached: what one application writes, the next call in any other sees. Beside a getter are
/// the value's name and the default, the answer when the value is missing or has the wrong type; a stored empty text is
/// a setting. Setters create missing keys and do nothing when the write fails.
///
/// ```cpp
/// UserSettingsConfig::SetApplicationTheme("Dark");
/// const Utf8String theme = UserSettingsConfig::GetApplicationTheme();
/// ```
/// Open files with ToNativePath(path): Windows' narrow functions do not take UTF-8, and Linux has no backslashes.
///
/// Nothing here throws for an ordinary failure, and every call asks again. No shared state: any thread may call; of two
/// writers the last wins.
class SHAREDUTILITIES_EXPORT UserSettingsConfig final
{
public:
    UserSettingsConfig() = delete;

    /// @name Connected projects
    /// Values of the key `\Configurations`.
    /// @{
    static bool UseDefaultConnectedProject();                           ///< "UseDefaultProject"; false
    static Utf8String GetDefaultConnectedProjectId();                   ///< "DefaultProjectID"; empty
    static void SetDefaultConnectedProjectId(const Utf8String& id);     ///< "DefaultProjectID"
    static Utf8String GetDefaultConnectedProjectName();                 ///< "DefaultProjectName"; empty
    static void SetDefaultConnectedProjectName(const Utf8String& name); ///< "DefaultProjectName"
    static bool UseRoamingProjectConfig();                              ///< "UseRoamingProjectConfig"; true
    static void SetUseRoamingProjectConfig(bool use);                   ///< "UseRoamingProjectConfig"
    static bool UseDefaultProjectForLogging();                          ///< "UseDefaultProjectForLogging"; true
    static void SetUseDefaultProjectForLogging(bool use);               ///< "UseDefaultProjectForLogging"
    /// @}

    /// @name Appearance
    /// Values of the key `\Configurations`.
    /// @{
    static Utf8String GetApplicationTheme();                  ///< "ThemeColor"; empty
    static void SetApplicationTheme(const Utf8String& theme); ///< "ThemeColor"

    /// "ThemeFont"; "Segoi UI", spelled so, or "Microsoft YaHei" when the current language is "zh-cn".
    static Utf8String GetApplicationFont();
    /// @}

    /// @name The start page's news feed
    /// Values of the key `\RSSSettings`. The caller defines what each category and zone means.
    /// @{
    static bool IsRssFeedEnabled();                             ///< "EnableFeed"; true
    static void EnableRssFeed(bool enable);                     ///< "EnableFeed"
    static bool GetShowPreviewerOnStartup();                    ///< "ShowOnStartup"; false
    static void SetShowPreviewerOnStartup(bool show);           ///< "ShowOnStartup"
    static Utf8String GetRssFeedLastReadInfo();                 ///< "LastRead"; empty
    static void SetRssFeedLastReadInfo(const Utf8String& info); ///< "LastRead"
    static void SetRssFeedUrl(const Utf8String& url);           ///< "FEEDUrl"; read by the feed itself: no getter
    static bool GetRssFeedCategory(int index);                  ///< "FEEDCategory" and the index, any; false
    static void SetRssFeedCategory(int index, bool selected);   ///< "FEEDCategory" and the index
    static bool GetRssFeedZone(int index);                      ///< "FEEDZone" and the index, any; false
    static void SetRssFeedZone(int index, bool selected);       ///< "FEEDZone" and the index
    /// @}

    /// @name Features
    /// Values of the key `\LicenseConfig`. Stored as numbers: any but 0 is true.
    /// @{
    static bool IsNuclearDesignCodeEnabled();         ///< "NuclearDesignCodes"; false
    static void EnableNuclearDesignCode(bool enable); ///< "NuclearDesignCodes"
    static bool IsLumConnectionEnabled();             ///< "LUMConnection"; false
    static void EnableLumConnection(bool enable);     ///< "LUMConnection"
    /// @}

    /// @name Installation
    /// Values of the key `\Build`.
    /// @{
    static bool GetIsNewVersionInstallFlag();           ///< "IsNewVersionInstall"; true
    static void SetIsNewVersionInstallFlag(bool isNew); ///< "IsNewVersionInstall"

    /// The product version that last ran for this user: what this release has recorded, else the newest earlier
    /// release that has. "21.00.00.00" when there are only settings of release 21, which recorded nothing; otherwise
    /// empty.
    static Utf8String GetLastInstalledProductVersion();

    /// Records VersionConfig::GetProductVersion() and raises the flag of GetIsNewVersionInstallFlag().
    static void SetCurrentInstalledProductVersion();
    /// @}

    /// @name Set elsewhere, by installers and support
    /// @{
    static Utf8String GetUserNameString(); ///< "UserName" of the installation record; empty
    static Utf8String GetUserEmail();      ///< "UserEmail" of `Software\Quenlor\Support`; the product's support address
    static bool GetTestCrashReporting();   ///< "TestCrashReporting" of `SOFTWARE\Quenlor\FraxoPro\<release>`; false

    /// Whether the document service is on for this process and the children it starts: the environment variable
    /// FRAXO_PRO_PL365 is set and not empty. It is never stored.
    static bool IsPL365Enabled();
    static void EnablePL365(bool enable); ///< Sets the variable to "1", or removes it.
    /// @}

    /// @name Companion tools and documents of the installation
    /// UTF-8 paths below DirectoryConfig::GetFRAXOProRoot(), whether or not anything is there. Without an installation
    /// record they are relative.
    /// @{
    static Utf8String GetStrucLinkExePath();          ///< `FRAXO\Plugins\StrucLink\StrucLink.exe`
    static Utf8String GetConnectionTagLinkExePath();  ///< `FRAXO\Plugins\ConnectionTagLink\ConnectionTagLink.exe`
    static Utf8String GetScriptEditorExePath();       ///< `FRAXO\Quenlor.Fraxo.ScriptEditor.exe`
    static Utf8String GetInputEditorExePath();        ///< `FRAXO\Quenlor.Fraxo.Editor.exe`
    static Utf8String GetFProRCExePath();             ///< `FRAXO\RCDesigner\FProRC.exe`
    static Utf8String GetStWizardExePath();           ///< `FRAXO\StWizard.exe`
    static Utf8String GetSectionWizardExePath();      ///< `FRAXO\SectionWizard\Section.exe`
    static Utf8String GetFPPMExePath();               ///< `FRAXO\FPPM\Program\SXP.exe`
    static Utf8String GetChineseSteelDesignExePath(); ///< `SSDD\LiteSSDD.exe`, not below `FRAXO\`

    /// `FRAXO\Quenlor.Fraxo.AutoLoadCombRuleManager.exe`
    static Utf8String GetAutoLoadCombinationRuleManagerExePath();

    static Utf8String GetOpenFraxoIdeHelpDocumentPath(); ///< `FRAXO\WinWrap\ww10_000.chm`
    static Utf8String GetFraxoProReadMePath();           ///< `ReadMe\index.html`, not with the help
    static Utf8String GetFraxoProHelpDocumentPath();     ///< `Help\index.html`
    static Utf8String GetReleaseReportDocumentPath();    ///< `Help\GUID-....html`: the same name in every language
    static Utf8String GetOpenFraxoHelpDocumentPath();    ///< `Help\OSAPP\index.html`
    static Utf8String SectionWizardHelpDocumentPath();   ///< `Help\SectionBuilder.html`
    /// @}

    /// @name The document-management client, Plexora Explorer
    /// From its own entries in HKEY_LOCAL_MACHINE: release line 10.00 before 08.11, the native registry view before the
    /// 32-bit one. The first entry that is not empty is used.
    /// @{
    static bool IsPlexoraExplorerInstalled();            ///< There is a version.
    static bool IsMultiplePlexoraExplorerInstalled();    ///< Both release lines are.
    static Utf8String GetPlexoraExplorerVersionString(); ///< "Version"; empty when it is not installed

    /// The three numbers of the version. All 0 unless it has exactly three parts, so also for "10.00.03.167".
    static PlexoraExplorerVersion GetPlexoraExplorerVersionTokens();

    /// The client's `bin` folder, without a trailing separator; empty when it does not exist. Not an executable,
    /// in spite of the name.
    static Utf8String GetPlexoraExplorerExecutablePath();
    /// @}

    /// @name Omnitech's connection design programs
    /// From what their installers leave in HKEY_LOCAL_MACHINE below `SOFTWARE\Omnitech`. Neither replaces the other.
    /// A switch is on when its text is "TRUE", in capitals.
    /// @{
    static Utf8String GetDesconWinExePath();  ///< "AppFullPath" if something is there; otherwise empty.
    static bool IsDesconWinInstalled();       ///< That path exists; the entry is not enough.
    static bool GetDesconWinInterface();      ///< "Interface"
    static bool GetDesconWinAsdCode();        ///< "DESCONWIN_ASD"
    static bool GetDesconWinAsdMetricCode();  ///< "DESCONWIN_ASD_METRIC"
    static bool GetDesconWinLrfdCode();       ///< "DESCONWIN_LRFD"
    static bool GetDesconWinLrfdMetricCode(); ///< "DESCONWIN_LRFD_METRIC"

    static Utf8String GetDesconBraceExePath();  ///< As for DesconWin.
    static bool IsDesconBraceInstalled();       ///< As for DesconWin.
    static bool GetDesconBraceInterface();      ///< "Interface"
    static bool GetDesconBraceAsdCode();        ///< "DESCON_BRACE_ASD"
    static bool GetDesconBraceAsdMetricCode();  ///< "DESCON_BRACE_ASD_METRIC"
    static bool GetDesconBraceLrfdCode();       ///< "DESCON_BRACE_LRFD"
    static bool GetDesconBraceLrfdMetricCode(); ///< "DESCON_BRACE_LRFD_METRIC"
    /// @}

    /// @name Applications that are installed on their own
    /// From their own registry entries. An ...ExePath is empty without an entry, or when nothing exists where it
    /// points; members that do not check say so.
    /// @{
    static Utf8String GetAdaptBuilderPath();    ///< The folder as recorded, unchecked; the user's entry comes first.
    static Utf8String GetAdaptBuilderExePath(); ///< `sbuilder.exe` in that folder: no other folder is tried.

    /// The program that was linked, else the latest one that was installed; the machine's entry before the user's.
    static Utf8String GetLumConceptExePath();

    static Utf8String GetPlanWinExePath(); ///< "ProductName" with `.exe` in the folder "InstallPath".
    static Utf8String GetPlanWinVersion(); ///< As recorded; empty when there is none.
    static Utf8String GetKRDCExePath();    ///< As for PlanWin.
    static Utf8String GetKRDCVersion();    ///< As recorded; empty when there is none.

    static Utf8String GetFraxoFoundationProductName(bool advanced); ///< Also its key in HKEY_CLASSES_ROOT.
    static Utf8String GetFraxoFoundationExePath(bool advanced);     ///< As its last version recorded it, unchecked.

    static bool IsWordInstalled();          ///< GetWordProgID() has an answer.
    static Utf8String GetWordProgID();      ///< Such as "Word.Application.16"; empty without Word.
    static int GetWordVersionNumber();      ///< The 16 of that; 0 for any other form.
    static Utf8String GetTechnipExePath();  ///< "ExeName"
    static Utf8String GetMsInfo32ExePath(); ///< The system information tool.
    /// @}

    /// Whether a process with that executable runs. `exe` may have a folder, which is ignored; the file name is
    /// compared without regard to letter case, and without extensions unless it has one.
    static bool IsExeRunning(const Utf8String& exe);
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
