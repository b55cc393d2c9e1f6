#include "UserSettingsConfig.h"

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "VersionConfig.h"
#include "language/LanguageChoice.h"
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

using UserSettings = InstallationTest;

TEST_F(UserSettings, AreWhereInstallersLookForThem)
{
    const auto isFlag = [&](auto set, auto get, const std::string& key, const char* name, bool whenMissing)
    {
        SCOPED_TRACE(name);
        EXPECT_EQ(get(), whenMissing);
        set(true);
        EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, key, name), (StoredValue{REG_DWORD, "\1\0\0\0"s}));
        set(false);
        EXPECT_FALSE(get());
        m_machine.WriteNumber(HKEY_CURRENT_USER, key, name, 7); // nothing is cached
        EXPECT_TRUE(get());
    };
    const auto isText = [&](auto set, auto get, const std::string& key, const char* name)
    {
        EXPECT_EQ(get(), "") << name;
        set("text");
        EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, key, name), (StoredValue{REG_SZ, "text\0"s}));
        EXPECT_EQ(get(), "text") << name;
    };
    // Similar switches have different defaults on purpose.
    // clang-format off
    isFlag(Settings::SetUseRoamingProjectConfig, Settings::UseRoamingProjectConfig, Configurations, "UseRoamingProjectConfig", true);
    isFlag(Settings::SetUseDefaultProjectForLogging, Settings::UseDefaultProjectForLogging, Configurations, "UseDefaultProjectForLogging", true);
    isFlag(Settings::EnableRssFeed, Settings::IsRssFeedEnabled, RssSettings, "EnableFeed", true);
    isFlag(Settings::SetShowPreviewerOnStartup, Settings::GetShowPreviewerOnStartup, RssSettings, "ShowOnStartup", false);
    isFlag(Settings::SetIsNewVersionInstallFlag, Settings::GetIsNewVersionInstallFlag, SettingsKey + R"(\Build)", "IsNewVersionInstall", true);
    isFlag(Settings::EnableNuclearDesignCode, Settings::IsNuclearDesignCodeEnabled, LicenseConfig, "NuclearDesignCodes", false);
    isFlag(Settings::EnableLumConnection, Settings::IsLumConnectionEnabled, LicenseConfig, "LUMConnection", false);
    isFlag([](bool on) { Settings::SetRssFeedCategory(-1, on); }, [] { return Settings::GetRssFeedCategory(-1); }, RssSettings, "FEEDCategory-1", false);
    isFlag([](bool on) { Settings::SetRssFeedZone(12, on); }, [] { return Settings::GetRssFeedZone(12); }, RssSettings, "FEEDZone12", false);
    isText(Settings::SetDefaultConnectedProjectId, Settings::GetDefaultConnectedProjectId, Configurations, "DefaultProjectID");
    isText(Settings::SetDefaultConnectedProjectName, Settings::GetDefaultConnectedProjectName, Configurations, "DefaultProjectName");
    isText(Settings::SetApplicationTheme, Settings::GetApplicationTheme, Configurations, "ThemeColor");
    isText(Settings::SetRssFeedLastReadInfo, Settings::GetRssFeedLastReadInfo, RssSettings, "LastRead");
    // clang-format on
    Settings::SetRssFeedUrl("text"); // which has no getter
    EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, RssSettings, "FEEDUrl"), (StoredValue{REG_SZ, "text\0"s}));
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

TEST_F(UserSettings, IncludeAFontForChinese)
{
    m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "zh-CN"); // letter case matters
    EXPECT_EQ(Settings::GetApplicationFont(), "Segoi UI");   // spelled so
    ForgetLanguages();
    m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "zh-cn");
    EXPECT_EQ(Settings::GetApplicationFont(), "Microsoft YaHei");
    m_machine.WriteText(HKEY_CURRENT_USER, Configurations, "ThemeFont", ""); // empty, but stored
    EXPECT_EQ(Settings::GetApplicationFont(), "");
}

TEST_F(UserSettings, IncludeTheVersionThatRanLast)
{
    const auto record = [this](const std::string& release, const char* version)
    {
        const std::string key = R"(Software\Quenlor Systems\FraxoPro\)" + release + R"(\Build)";
        m_machine.WriteText(HKEY_CURRENT_USER, key, "ProductVersion", version);
    };
    record("21.00.00", "21.05.00.09"); // only the key matters
    EXPECT_EQ(Settings::GetLastInstalledProductVersion(), "21.00.00.00");
    record("22.00.00", "22.05.00.41");
    EXPECT_EQ(LastVersionBefore("24.00.00"), "22.05.00.41");
    EXPECT_EQ(LastVersionBefore("22.00.00"), "21.00.00.00") << "only what came before";

    record(Release, "1.01.00.07"); // of an earlier build of this release
    EXPECT_EQ(Settings::GetLastInstalledProductVersion(), "1.01.00.07");
    Settings::SetIsNewVersionInstallFlag(false);
    Settings::SetCurrentInstalledProductVersion();
    EXPECT_EQ(Settings::GetLastInstalledProductVersion(), VersionConfig::GetProductVersion());
    EXPECT_TRUE(Settings::GetIsNewVersionInstallFlag());
}
} // namespace
