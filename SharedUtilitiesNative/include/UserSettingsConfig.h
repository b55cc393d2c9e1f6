#pragma once

#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The user's preferences, shared by all applications of the family.
///
/// Settings live in the registry, below RegistryHelper::GetCurrentUserKey() of HKEY_CURRENT_USER unless a member says
/// otherwise. Nothing is cached: what one application writes, the next call in any other sees. A setting that is
/// missing or has the wrong type gives the default that stands beside its getter; a stored empty text is a setting.
/// Setters create missing keys and do nothing when the write fails.
///
/// Nothing here throws for an ordinary failure. No shared state: any thread may call; of two writers the last wins.
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

    // Set elsewhere, by installers and support.

    static Utf8String GetUserNameString(); ///< empty; from the installation record, HKEY_CLASSES_ROOT\FraxoPro\22.00.00
    static Utf8String GetUserEmail();      ///< the product's support address; from `Software\Quenlor\Support`
    static bool GetTestCrashReporting();   ///< false; from `SOFTWARE\Quenlor\FraxoPro\22.00.00`

    /// Whether the document service is on for this process and the children it starts: the environment variable
    /// FRAXO_PRO_PL365 is set and not empty. It is never stored.
    static bool IsPL365Enabled();
    static void EnablePL365(bool enable); ///< Sets the variable to "1", or removes it.
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
