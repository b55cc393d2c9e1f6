#include "UserSettingsConfig.h"

#include <cstdlib>
#include <string>

#include <gmock/gmock.h>

#include "VersionConfig.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"
#include "usersettings/InstalledVersion.h"

namespace
{
using namespace std::string_literals;
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using Settings = UserSettingsConfig;

const std::string Configurations = SettingsKey + R"(\Configurations)";
const std::string RssSettings = SettingsKey + R"(\RSSSettings)";
const std::string LicenseConfig = SettingsKey + R"(\LicenseConfig)";
const std::string Build = SettingsKey + R"(\Build)";

class UserSettings : public InstallationTest
{
protected:
    std::optional<StoredValue> Stored(const std::string& key, const char* name) const
    {
        return m_machine.ReadData(HKEY_CURRENT_USER, key, name);
    }

    /// An earlier release records its version, or only leaves settings.
    void Run(const std::string& release, const char* version) const
    {
        const std::string key = R"(Software\Quenlor Systems\FraxoPro\)" + release;
        m_machine.WriteText(HKEY_CURRENT_USER, version ? key + R"(\Build)" : key, "ProductVersion",
                            version ? version : "");
    }
};

TEST_F(UserSettings, AreWhereInstallersLookForThem)
{
    const struct
    {
        void (*set)(bool);
        bool (*get)();
        std::string key;
        const char* name;
        bool whenMissing; // similar switches differ on purpose
    } flags[] = {
        // clang-format off
        {Settings::SetUseRoamingProjectConfig, Settings::UseRoamingProjectConfig, Configurations, "UseRoamingProjectConfig", true},
        {Settings::SetUseDefaultProjectForLogging, Settings::UseDefaultProjectForLogging, Configurations, "UseDefaultProjectForLogging", true},
        {Settings::EnableRssFeed, Settings::IsRssFeedEnabled, RssSettings, "EnableFeed", true},
        {Settings::SetShowPreviewerOnStartup, Settings::GetShowPreviewerOnStartup, RssSettings, "ShowOnStartup", false},
        {Settings::SetIsNewVersionInstallFlag, Settings::GetIsNewVersionInstallFlag, Build, "IsNewVersionInstall", true},
        {Settings::EnableNuclearDesignCode, Settings::IsNuclearDesignCodeEnabled, LicenseConfig, "NuclearDesignCodes", false},
        {Settings::EnableLumConnection, Settings::IsLumConnectionEnabled, LicenseConfig, "LUMConnection", false},
        {[](bool on) { Settings::SetRssFeedCategory(-1, on); }, [] { return Settings::GetRssFeedCategory(-1); }, RssSettings, "FEEDCategory-1", false},
        {[](bool on) { Settings::SetRssFeedZone(12, on); }, [] { return Settings::GetRssFeedZone(12); }, RssSettings, "FEEDZone12", false},
        // clang-format on
    };
    for (const auto& [set, get, key, name, whenMissing] : flags)
    {
        SCOPED_TRACE(name);
        EXPECT_EQ(get(), whenMissing);
        set(true);
        EXPECT_EQ(Stored(key, name), (StoredValue{REG_DWORD, "\1\0\0\0"s}));
        set(false);
        EXPECT_FALSE(get());
        m_machine.WriteNumber(HKEY_CURRENT_USER, key, name, 7); // nothing is cached
        EXPECT_TRUE(get());
    }
    const struct
    {
        void (*set)(const Quenlor::Utf8String&);
        Quenlor::Utf8String (*get)();
        std::string key;
        const char* name;
    } texts[] = {
        // clang-format off
        {Settings::SetDefaultConnectedProjectId, Settings::GetDefaultConnectedProjectId, Configurations, "DefaultProjectID"},
        {Settings::SetDefaultConnectedProjectName, Settings::GetDefaultConnectedProjectName, Configurations, "DefaultProjectName"},
        {Settings::SetApplicationTheme, Settings::GetApplicationTheme, Configurations, "ThemeColor"},
        {Settings::SetRssFeedLastReadInfo, Settings::GetRssFeedLastReadInfo, RssSettings, "LastRead"},
        {Settings::SetRssFeedUrl, nullptr, RssSettings, "FEEDUrl"},
        // clang-format on
    };
    for (const auto& [set, get, key, name] : texts)
    {
        EXPECT_TRUE(!get || get().empty()) << name;
        set("text");
        EXPECT_EQ(Stored(key, name), (StoredValue{REG_SZ, "text\0"s}));
        EXPECT_TRUE(!get || get() == "text") << name;
    }
}

TEST_F(UserSettings, OfInstallersAndSupportAreOutsideTheUsersKey)
{
    EXPECT_EQ(Settings::GetUserEmail(), "support@quenlor.example");
    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "UserName", "A. User");
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor\Support)", "UserEmail", ""); // empty, but stored
    m_machine.WriteNumber(HKEY_CURRENT_USER, VendorKey, "TestCrashReporting", 1);
    EXPECT_EQ(Settings::GetUserNameString(), "A. User");
    EXPECT_EQ(Settings::GetUserEmail(), "");
    EXPECT_TRUE(Settings::GetTestCrashReporting());
}

TEST_F(UserSettings, KeepTheDocumentServiceInTheEnvironment)
{
    constexpr char Variable[] = "FRAXO_PRO_PL365";
    m_machine.SetEnvironment(Variable, "0"); // any text will do
    EXPECT_TRUE(Settings::IsPL365Enabled());
    Settings::EnablePL365(false);
    EXPECT_EQ(std::getenv(Variable), nullptr);
    Settings::EnablePL365(true);
    EXPECT_STREQ(std::getenv(Variable), "1");
}

// A process has one language, so each of these needs one of its own.

TEST_F(UserSettings, HaveAFontForChinese)
{
    m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "zh-cn");
    EXPECT_EQ(Settings::GetApplicationFont(), "Microsoft YaHei");
    m_machine.WriteText(HKEY_CURRENT_USER, Configurations, "ThemeFont", ""); // empty, but stored
    EXPECT_EQ(Settings::GetApplicationFont(), "");
}

TEST_F(UserSettings, HaveOneFontForAllOtherLanguages)
{
    m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "zh-CN"); // letter case matters
    EXPECT_EQ(Settings::GetApplicationFont(), "Segoi UI");   // spelled so
}

TEST_F(UserSettings, IncludeTheVersionThatRanLast)
{
    Run("20.00.00", nullptr);
    Run("19.00.00", "19.00.00.01");
    EXPECT_EQ(LastVersionBefore("24.00.00"), "") << "nothing below 21 is considered";
    Run("21.00.00", nullptr);
    Run("21.00.00", "21.05.00.09"); // only the key matters
    EXPECT_EQ(LastVersionBefore("24.00.00"), "21.00.00.00");
    EXPECT_EQ(Settings::GetLastInstalledProductVersion(), "21.00.00.00");
    Run("22.00.00", "22.05.00.41");
    Run("23.00.00", "");
    EXPECT_EQ(LastVersionBefore("24.00.00"), "22.05.00.41");
    EXPECT_EQ(LastVersionBefore("22.00.00"), "21.00.00.00") << "only what came before";
    EXPECT_EQ(LastVersionBefore("unknown"), "21.00.00.00");
    Run("100.00.00", "100.01.00.00");
    EXPECT_EQ(LastVersionBefore("101.00.00"), "100.01.00.00");

    Run(Release, "1.01.00.07"); // of an earlier build of this release
    EXPECT_EQ(Settings::GetLastInstalledProductVersion(), "1.01.00.07");
    Settings::SetIsNewVersionInstallFlag(false);
    Settings::SetCurrentInstalledProductVersion();
    EXPECT_EQ(Settings::GetLastInstalledProductVersion(), VersionConfig::GetProductVersion());
    EXPECT_TRUE(Settings::GetIsNewVersionInstallFlag());
}
} // namespace
