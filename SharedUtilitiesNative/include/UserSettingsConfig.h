#pragma once

#include <cstdint>

#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The version of the document-management client.
struct PlexoraExplorerVersion
{
    std::int32_t Major = 0;
    std::int32_t Minor = 0;
    std::int32_t Build = 0;
};

/// The user's preferences, shared by all applications of the family, and where companion applications lie.
///
/// Settings live in the registry, below RegistryHelper::GetCurrentUserKey() of HKEY_CURRENT_USER unless a member says
/// otherwise. Nothing is cached: what one application writes, the next call in any other sees. A setting that is
/// missing or has the wrong type gives the default that stands beside its getter; a stored empty text is a setting.
/// Setters create missing keys and do nothing when the write fails.
///
/// Nothing here throws for an ordinary failure, and every call asks anew. No shared state: any thread may call; of two
/// writers the last wins.
class SHAREDUTILITIES_EXPORT UserSettingsConfig final
{
public:
    UserSettingsConfig() = delete;

    // Connected projects: `\Configurations`.

    static bool UseDefaultConnectedProject();         ///< false
    static Utf8String GetDefaultConnectedProjectId(); ///< empty
    static void SetDefaultConnectedProjectId(const Utf8String& id);
    static Utf8String GetDefaultConnectedProjectName(); ///< empty
    static void SetDefaultConnectedProjectName(const Utf8String& name);
    static bool UseRoamingProjectConfig(); ///< true
    static void SetUseRoamingProjectConfig(bool use);
    static bool UseDefaultProjectForLogging(); ///< true
    static void SetUseDefaultProjectForLogging(bool use);

    // Appearance: `\Configurations`.

    static Utf8String GetApplicationTheme(); ///< empty
    static void SetApplicationTheme(const Utf8String& theme);

    /// "Segoi UI", spelled so, or "Microsoft YaHei" when the current language is "zh-cn".
    static Utf8String GetApplicationFont();

    // The start page's news feed: `\RSSSettings`. What a category or zone stands for is the caller's business.

    static bool IsRssFeedEnabled(); ///< true
    static void EnableRssFeed(bool enable);
    static bool GetShowPreviewerOnStartup(); ///< false
    static void SetShowPreviewerOnStartup(bool show);
    static Utf8String GetRssFeedLastReadInfo(); ///< empty
    static void SetRssFeedLastReadInfo(const Utf8String& info);
    static void SetRssFeedUrl(const Utf8String& url); ///< Read by the feed itself: there is no getter.
    static bool GetRssFeedCategory(int index);        ///< false, for any index
    static void SetRssFeedCategory(int index, bool selected);
    static bool GetRssFeedZone(int index); ///< false, for any index
    static void SetRssFeedZone(int index, bool selected);

    // Features: `\LicenseConfig`. Stored as numbers: any but 0 is true.

    static bool IsNuclearDesignCodeEnabled(); ///< false
    static void EnableNuclearDesignCode(bool enable);
    static bool IsLumConnectionEnabled(); ///< false
    static void EnableLumConnection(bool enable);

    // Installation: `\Build`.

    static bool GetIsNewVersionInstallFlag(); ///< true
    static void SetIsNewVersionInstallFlag(bool isNew);

    /// The product version that last ran for this user: what this release has recorded, else the newest earlier
    /// release that has. "21.00.00.00" when there are only settings of release 21, which recorded nothing; empty when
    /// there is nothing at all.
    static Utf8String GetLastInstalledProductVersion();

    /// Records VersionConfig::GetProductVersion() and raises the flag of GetIsNewVersionInstallFlag().
    static void SetCurrentInstalledProductVersion();

    // Set elsewhere, by installers and support.

    static Utf8String GetUserNameString(); ///< empty; from the installation record, HKEY_CLASSES_ROOT\FraxoPro\22.00.00
    static Utf8String GetUserEmail();      ///< the product's support address; from `Software\Quenlor\Support`
    static bool GetTestCrashReporting();   ///< false; from `SOFTWARE\Quenlor\FraxoPro\22.00.00`

    /// Whether the document service is on for this process and the children it starts: the environment variable
    /// FRAXO_PRO_PL365 is set and not empty. It is never stored.
    static bool IsPL365Enabled();
    static void EnablePL365(bool enable); ///< Sets the variable to "1", or removes it.

    // Companion tools and documents of the installation: UTF-8 paths below the folder named, whether or not anything is
    // there. Without an installation record they are relative.

    static Utf8String GetStrucLinkExePath();         ///< In DirectoryConfig::GetPluginsDirectory().
    static Utf8String GetConnectionTagLinkExePath(); ///< In DirectoryConfig::GetPluginsDirectory().

    // Below DirectoryConfig::GetFRAXOProRoot().

    static Utf8String GetScriptEditorExePath();
    static Utf8String GetInputEditorExePath();
    static Utf8String GetFProRCExePath();
    static Utf8String GetStWizardExePath();
    static Utf8String GetSectionWizardExePath();
    static Utf8String GetFPPMExePath();
    static Utf8String GetChineseSteelDesignExePath();
    static Utf8String GetAutoLoadCombinationRuleManagerExePath();
    static Utf8String GetOpenFraxoIdeHelpDocumentPath();
    static Utf8String GetFraxoProReadMePath();

    // In DirectoryConfig::GetHelpDirectory().

    static Utf8String GetFraxoProHelpDocumentPath();
    static Utf8String GetReleaseReportDocumentPath(); ///< The same name in every language.
    static Utf8String GetOpenFraxoHelpDocumentPath();
    static Utf8String SectionWizardHelpDocumentPath();

    // The document-management client, Plexora Explorer, by its own entries in HKEY_LOCAL_MACHINE: release line 10.00
    // before 08.11, the native registry view before the 32-bit one. The first entry that is not empty counts.

    static bool IsPlexoraExplorerInstalled();
    static bool IsMultiplePlexoraExplorerInstalled();    ///< Both release lines are.
    static Utf8String GetPlexoraExplorerVersionString(); ///< Empty when it is not installed.

    /// The three numbers of the version. All 0 when it has not exactly three parts: also for "10.00.03.167".
    static PlexoraExplorerVersion GetPlexoraExplorerVersionTokens();

    /// The client's `bin` folder, without a trailing separator; empty when it does not exist. No executable, whatever
    /// the name says.
    static Utf8String GetPlexoraExplorerExecutablePath();

    // Omnitech's connection design programs, by what their installers leave in HKEY_LOCAL_MACHINE below
    // `SOFTWARE\Omnitech`. Neither stands in for the other. A switch is on when its text is "TRUE", in capitals.

    static Utf8String GetDesconWinExePath(); ///< "AppFullPath" if something is there; otherwise empty.
    static bool IsDesconWinInstalled();      ///< There is such a path. The entry alone is not enough.
    static bool GetDesconWinInterface();
    static bool GetDesconWinAsdCode();
    static bool GetDesconWinAsdMetricCode();
    static bool GetDesconWinLrfdCode();
    static bool GetDesconWinLrfdMetricCode();

    static Utf8String GetDesconBraceExePath(); ///< As for DesconWin.
    static bool IsDesconBraceInstalled();      ///< As for DesconWin.
    static bool GetDesconBraceInterface();
    static bool GetDesconBraceAsdCode();
    static bool GetDesconBraceAsdMetricCode();
    static bool GetDesconBraceLrfdCode();
    static bool GetDesconBraceLrfdMetricCode();

    // Applications that are installed on their own, by their own registry entries. An ...ExePath is empty when there
    // is no entry, or when nothing is where it points to; members that do not look say so.

    static Utf8String GetAdaptBuilderPath();    ///< The folder as recorded, unchecked; the user's entry comes first.
    static Utf8String GetAdaptBuilderExePath(); ///< `sbuilder.exe` in that folder: no other folder is tried.

    /// The program that was linked, else the latest one that was installed; the machine's entry before the user's.
    static Utf8String GetLumConceptExePath();

    static Utf8String GetPlanWinExePath();
    static Utf8String GetPlanWinVersion(); ///< As recorded; empty when there is none.
    static Utf8String GetKRDCExePath();
    static Utf8String GetKRDCVersion(); ///< As recorded; empty when there is none.

    static Utf8String GetFraxoFoundationProductName(bool advanced); ///< Also its key in HKEY_CLASSES_ROOT.
    static Utf8String GetFraxoFoundationExePath(bool advanced);     ///< As its last version recorded it, unchecked.

    static bool IsWordInstalled();
    static Utf8String GetWordProgID(); ///< Such as "Word.Application.16"; empty without Word.
    static int GetWordVersionNumber(); ///< The 16 of that; 0 for any other form.
    static Utf8String GetTechnipExePath();
    static Utf8String GetMsInfo32ExePath(); ///< The system information tool.

    /// Whether a process with that executable runs. `exe` may have a folder, which is ignored; the file name is
    /// compared without regard to letter case, and without extensions unless it has one. On Linux processes of other
    /// users may be unknown.
    static bool IsExeRunning(const Utf8String& exe);
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
