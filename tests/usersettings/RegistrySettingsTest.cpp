#include "UserSettingsConfig.h"

#include <cstdlib>
#include <string>

#include <gmock/gmock.h>

#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using namespace std::string_literals;
using Settings = Quenlor::Fraxo::SharedUtilities::Native::UserSettingsConfig;

const std::string Configurations = SettingsKey + R"(\Configurations)";
const std::string RssSettings = SettingsKey + R"(\RSSSettings)";
const std::string LicenseConfig = SettingsKey + R"(\LicenseConfig)";
const std::string Build = SettingsKey + R"(\Build)";

using UserSettings = InstallationTest;

TEST_F(UserSettings, KeepFlagsAsNumbersWhereInstallersLookForThem)
{
    struct Row
    {
        void (*set)(bool);
        bool (*get)();
        std::string key;
        const char* name;
        bool whenMissing; // not the same for like switches, on purpose
    };
    // clang-format off
    const Row rows[] = {
        {Settings::SetUseRoamingProjectConfig, Settings::UseRoamingProjectConfig, Configurations, "UseRoamingProjectConfig", true},
        {Settings::SetUseDefaultProjectForLogging, Settings::UseDefaultProjectForLogging, Configurations, "UseDefaultProjectForLogging", true},
        {Settings::EnableRssFeed, Settings::IsRssFeedEnabled, RssSettings, "EnableFeed", true},
        {Settings::SetShowPreviewerOnStartup, Settings::GetShowPreviewerOnStartup, RssSettings, "ShowOnStartup", false},
        {Settings::SetIsNewVersionInstallFlag, Settings::GetIsNewVersionInstallFlag, Build, "IsNewVersionInstall", true},
        {Settings::EnableNuclearDesignCode, Settings::IsNuclearDesignCodeEnabled, LicenseConfig, "NuclearDesignCodes", false},
        {Settings::EnableLumConnection, Settings::IsLumConnectionEnabled, LicenseConfig, "LUMConnection", false},
    };
    // clang-format on
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.get(), row.whenMissing);
        row.set(true);
        EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, row.key, row.name), (StoredValue{REG_DWORD, "\1\0\0\0"s}));
        row.set(false);
        EXPECT_FALSE(row.get());
        m_machine.WriteNumber(HKEY_CURRENT_USER, row.key, row.name, 7); // nothing is cached
        EXPECT_TRUE(row.get());
    }
    EXPECT_FALSE(Settings::UseDefaultConnectedProject());
}

TEST_F(UserSettings, KeepTextsWhereInstallersLookForThem)
{
    struct Row
    {
        void (*set)(const Quenlor::Utf8String&);
        Quenlor::Utf8String (*get)();
        std::string key;
        const char* name;
    };
    // clang-format off
    const Row rows[] = {
        {Settings::SetDefaultConnectedProjectId, Settings::GetDefaultConnectedProjectId, Configurations, "DefaultProjectID"},
        {Settings::SetDefaultConnectedProjectName, Settings::GetDefaultConnectedProjectName, Configurations, "DefaultProjectName"},
        {Settings::SetApplicationTheme, Settings::GetApplicationTheme, Configurations, "ThemeColor"},
        {Settings::SetRssFeedLastReadInfo, Settings::GetRssFeedLastReadInfo, RssSettings, "LastRead"},
        {Settings::SetRssFeedUrl, nullptr, RssSettings, "FEEDUrl"},
    };
    // clang-format on
    for (const Row& row : rows)
    {
        const std::string text = std::string{"Br\u00FCcke of "} + row.name;
        EXPECT_TRUE(!row.get || row.get().empty()) << row.name;
        row.set(text);
        EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, row.key, row.name), (StoredValue{REG_SZ, text + '\0'}));
        EXPECT_TRUE(!row.get || row.get() == text) << row.name;
    }
}

TEST_F(UserSettings, NameCategoriesAndZonesByAnyIndex)
{
    Settings::SetRssFeedCategory(-1, true);
    Settings::SetRssFeedZone(12, true);
    EXPECT_TRUE(m_machine.ReadData(HKEY_CURRENT_USER, RssSettings, "FEEDCategory-1"));
    EXPECT_TRUE(m_machine.ReadData(HKEY_CURRENT_USER, RssSettings, "FEEDZone12"));
    EXPECT_TRUE(Settings::GetRssFeedCategory(-1));
    EXPECT_TRUE(Settings::GetRssFeedZone(12));
}

TEST_F(UserSettings, OfInstallersAndSupportLieOutsideTheUsersKey)
{
    EXPECT_EQ(Settings::GetUserEmail(), "support@quenlor.example");

    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "UserName", "A. User");
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor\Support)", "UserEmail", ""); // empty, but stored
    m_machine.WriteNumber(HKEY_CURRENT_USER, VendorKey, "TestCrashReporting", 1);
    EXPECT_EQ(Settings::GetUserNameString(), "A. User");
    EXPECT_EQ(Settings::GetUserEmail(), "");
    EXPECT_TRUE(Settings::GetTestCrashReporting());
}

TEST_F(UserSettings, KeepTheDocumentServiceInTheEnvironmentAlone)
{
    constexpr char Variable[] = "FRAXO_PRO_PL365";
    m_machine.SetEnvironment(Variable, {}); // given back at the end
    Settings::EnablePL365(true);
    EXPECT_STREQ(std::getenv(Variable), "1");
    Settings::EnablePL365(false);
    EXPECT_EQ(std::getenv(Variable), nullptr);
    m_machine.SetEnvironment(Variable, "0"); // any text will do
    EXPECT_TRUE(Settings::IsPL365Enabled());
}

// A process has one language, so each of these needs one of its own.

TEST_F(UserSettings, HaveAFontOfTheirOwnForChinese)
{
    m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "zh-cn");
    EXPECT_EQ(Settings::GetApplicationFont(), "Microsoft YaHei");
    m_machine.WriteText(HKEY_CURRENT_USER, Configurations, "ThemeFont", ""); // empty, but stored
    EXPECT_EQ(Settings::GetApplicationFont(), "");
}

TEST_F(UserSettings, HaveOneFontForAllOtherLanguages)
{
    m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "zh-CN"); // letter case counts
    EXPECT_EQ(Settings::GetApplicationFont(), "Segoi UI");   // spelled so
}
} // namespace
