#include "UserSettingsConfig.h"

#include <algorithm>
#include <optional>
#include <string>

#include <Platform/Win32.h>

#include "CoreUtilities.h"
#include "LanguageHelper.h"
#include "RegistryHelper.h"
#include "VersionConfig.h"
#include "core/NumberConversion.h"
#include "registry/ProductKeys.h"
#include "registry/RegistryKey.h"
#include "usersettings/InstalledVersion.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
constexpr char Configurations[] = R"(\Configurations)";
constexpr char RssSettings[] = R"(\RSSSettings)";
constexpr char LicenseConfig[] = R"(\LicenseConfig)";
constexpr char Build[] = R"(\Build)";

// A row is what a getter and its setter share. Names are spelled as installers and earlier releases spell them. Similar
// switches have different defaults on purpose.

struct Flag
{
    const char* subKey; // below the per-user key, with its leading backslash
    const char* name;
    bool whenMissing;
};

struct Text
{
    const char* subKey;
    const char* name;
};

// clang-format off
constexpr Flag UseDefaultProject{Configurations, "UseDefaultProject", false};
constexpr Flag UseRoamingConfig {Configurations, "UseRoamingProjectConfig", true};
constexpr Flag ProjectForLogging{Configurations, "UseDefaultProjectForLogging", true};
constexpr Flag RssFeed          {RssSettings,    "EnableFeed", true};
constexpr Flag ShowPreviewer    {RssSettings,    "ShowOnStartup", false};
constexpr Flag IsNewVersion     {Build,          "IsNewVersionInstall", true};
constexpr Flag NuclearCodes     {LicenseConfig,  "NuclearDesignCodes", false};
constexpr Flag LumConnection    {LicenseConfig,  "LUMConnection", false};

constexpr Text ProjectId  {Configurations, "DefaultProjectID"};
constexpr Text ProjectName{Configurations, "DefaultProjectName"};
constexpr Text Theme      {Configurations, "ThemeColor"};
constexpr Text Font       {Configurations, "ThemeFont"};
constexpr Text LastRead   {RssSettings,    "LastRead"};
constexpr Text FeedUrl    {RssSettings,    "FEEDUrl"};
constexpr Text Version    {Build,          "ProductVersion"};
// clang-format on

constexpr char FeedCategory[] = "FEEDCategory"; // and an index
constexpr char FeedZone[] = "FEEDZone";
constexpr char DocumentService[] = "FRAXO_PRO_PL365";

Utf8String KeyOf(const char* subKey)
{
    return RegistryHelper::GetCurrentUserKey() + subKey;
}

bool Read(const Flag& row)
{
    return RegistryHelper::GetBoolValue(HKEY_CURRENT_USER, KeyOf(row.subKey), row.name, row.whenMissing);
}

void Write(const Flag& row, bool value)
{
    RegistryHelper::SetBoolValue(HKEY_CURRENT_USER, KeyOf(row.subKey), row.name, value);
}

Utf8String Read(const Text& row)
{
    return RegistryHelper::GetStringValue(HKEY_CURRENT_USER, KeyOf(row.subKey), row.name, {});
}

void Write(const Text& row, const Utf8String& value)
{
    RegistryHelper::SetStringValue(HKEY_CURRENT_USER, KeyOf(row.subKey), row.name, value);
}

bool ReadFeedFlag(const std::string& name)
{
    return Read(Flag{RssSettings, name.c_str(), false});
}

void WriteFeedFlag(const std::string& name, bool value)
{
    Write(Flag{RssSettings, name.c_str(), false}, value);
}
} // namespace

// clang-format off
bool       UserSettingsConfig::UseDefaultConnectedProject()     { return Read(UseDefaultProject); }
bool       UserSettingsConfig::UseRoamingProjectConfig()        { return Read(UseRoamingConfig); }
bool       UserSettingsConfig::UseDefaultProjectForLogging()    { return Read(ProjectForLogging); }
bool       UserSettingsConfig::IsRssFeedEnabled()               { return Read(RssFeed); }
bool       UserSettingsConfig::GetShowPreviewerOnStartup()      { return Read(ShowPreviewer); }
bool       UserSettingsConfig::GetIsNewVersionInstallFlag()     { return Read(IsNewVersion); }
bool       UserSettingsConfig::IsNuclearDesignCodeEnabled()     { return Read(NuclearCodes); }
bool       UserSettingsConfig::IsLumConnectionEnabled()         { return Read(LumConnection); }
bool       UserSettingsConfig::GetRssFeedCategory(int index)    { return ReadFeedFlag(FeedCategory + std::to_string(index)); }
bool       UserSettingsConfig::GetRssFeedZone(int index)        { return ReadFeedFlag(FeedZone + std::to_string(index)); }
Utf8String UserSettingsConfig::GetDefaultConnectedProjectId()   { return Read(ProjectId); }
Utf8String UserSettingsConfig::GetDefaultConnectedProjectName() { return Read(ProjectName); }
Utf8String UserSettingsConfig::GetApplicationTheme()            { return Read(Theme); }
Utf8String UserSettingsConfig::GetRssFeedLastReadInfo()         { return Read(LastRead); }

void UserSettingsConfig::SetUseRoamingProjectConfig(bool use)                          { Write(UseRoamingConfig, use); }
void UserSettingsConfig::SetUseDefaultProjectForLogging(bool use)                      { Write(ProjectForLogging, use); }
void UserSettingsConfig::EnableRssFeed(bool enable)                                    { Write(RssFeed, enable); }
void UserSettingsConfig::SetShowPreviewerOnStartup(bool show)                          { Write(ShowPreviewer, show); }
void UserSettingsConfig::SetIsNewVersionInstallFlag(bool isNew)                        { Write(IsNewVersion, isNew); }
void UserSettingsConfig::EnableNuclearDesignCode(bool enable)                          { Write(NuclearCodes, enable); }
void UserSettingsConfig::EnableLumConnection(bool enable)                              { Write(LumConnection, enable); }
void UserSettingsConfig::SetRssFeedCategory(int index, bool selected)                  { WriteFeedFlag(FeedCategory + std::to_string(index), selected); }
void UserSettingsConfig::SetRssFeedZone(int index, bool selected)                      { WriteFeedFlag(FeedZone + std::to_string(index), selected); }
void UserSettingsConfig::SetDefaultConnectedProjectId(const Utf8String& id)            { Write(ProjectId, id); }
void UserSettingsConfig::SetDefaultConnectedProjectName(const Utf8String& name)        { Write(ProjectName, name); }
void UserSettingsConfig::SetApplicationTheme(const Utf8String& theme)                  { Write(Theme, theme); }
void UserSettingsConfig::SetRssFeedLastReadInfo(const Utf8String& info)                { Write(LastRead, info); }
void UserSettingsConfig::SetRssFeedUrl(const Utf8String& url)                          { Write(FeedUrl, url); }
// clang-format on

Utf8String UserSettingsConfig::GetApplicationFont()
{
    // "Segoi" is what is stored on users' machines; the right spelling would be another font to them.
    const Attempt usual;
    const char* const whenMissing = LanguageHelper::GetCurrentLanguage() == "zh-cn" ? "Microsoft YaHei" : "Segoi UI";
    const std::optional<std::string> stored = ReadData(HKEY_CURRENT_USER, KeyOf(Font.subKey), Font.name, REG_SZ);
    if (!stored)
        return whenMissing;
    usual.PassOver(1);
    return stored->c_str(); // up to the first NUL
}

Utf8String LastVersionBefore(const Utf8String& release)
{
    constexpr int oldestThatRecords = 22;
    for (int earlier = std::max(LeadingNumber(release), oldestThatRecords) - 1; earlier >= oldestThatRecords; --earlier)
    {
        const Attempt attempt;
        const Utf8String key = UserKeyOf(std::to_string(earlier) + ".00.00") + Version.subKey;
        const Utf8String version = RegistryHelper::GetStringValue(HKEY_CURRENT_USER, key, Version.name, {});
        if (!version.empty())
            return version;
        attempt.PassOver();
    }
    // Release 21 never recorded its version: that it left settings has to do.
    return RegistryHelper::CheckIfKeyExists(HKEY_CURRENT_USER, UserKeyOf("21.00.00")) ? "21.00.00.00" : "";
}

Utf8String UserSettingsConfig::GetLastInstalledProductVersion()
{
    const Attempt current;
    const Utf8String version = Read(Version);
    if (!version.empty())
        return version;
    current.PassOver();
    return LastVersionBefore(VersionConfig::GetReleaseNumber());
}

void UserSettingsConfig::SetCurrentInstalledProductVersion()
{
    Write(Version, VersionConfig::GetProductVersion());
    SetIsNewVersionInstallFlag(true);
}

Utf8String UserSettingsConfig::GetUserNameString()
{
    return InstallationRecord("UserName");
}

Utf8String UserSettingsConfig::GetUserEmail()
{
    return RegistryHelper::GetStringValue(HKEY_CURRENT_USER, R"(Software\Quenlor\Support)", "UserEmail",
                                          "support@quenlor.example");
}

bool UserSettingsConfig::GetTestCrashReporting()
{
    return RegistryHelper::GetBoolValue(HKEY_CURRENT_USER, ProductKey(), "TestCrashReporting", false);
}

bool UserSettingsConfig::IsPL365Enabled()
{
    return !GetEnvironmentVariableValue(DocumentService).empty();
}

void UserSettingsConfig::EnablePL365(bool enable)
{
    SetEnvironmentVariableValue(DocumentService, enable ? "1" : "");
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
