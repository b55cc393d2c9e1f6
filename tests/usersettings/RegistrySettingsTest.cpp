#include "UserSettingsConfig.h"

#include <cstdlib>
#include <optional>
#include <string>

#include <gmock/gmock.h>

#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using Quenlor::Utf8String;
using Quenlor::Fraxo::SharedUtilities::Native::UserSettingsConfig;
using ::testing::HasSubstr;

constexpr char Configurations[] = R"(Software\Quenlor Systems\FraxoPro\22.00.00\Configurations)";
constexpr char RssSettings[] = R"(Software\Quenlor Systems\FraxoPro\22.00.00\RSSSettings)";
constexpr char LicenseConfig[] = R"(Software\Quenlor Systems\FraxoPro\22.00.00\LicenseConfig)";
constexpr char Build[] = R"(Software\Quenlor Systems\FraxoPro\22.00.00\Build)";

class UserSettings : public InstallationTest
{
protected:
    std::optional<StoredValue> Stored(const char* key, const char* name) const
    {
        return m_machine.ReadData(HKEY_CURRENT_USER, key, name);
    }
};

StoredValue Number(DWORD number)
{
    return {REG_DWORD, {reinterpret_cast<const char*>(&number), sizeof number}};
}

TEST_F(UserSettings, HaveTheirDefaultsForANewUser)
{
    // Not the same for like switches, on purpose.
    EXPECT_TRUE(UserSettingsConfig::IsRssFeedEnabled());
    EXPECT_TRUE(UserSettingsConfig::UseRoamingProjectConfig());
    EXPECT_TRUE(UserSettingsConfig::UseDefaultProjectForLogging());
    EXPECT_TRUE(UserSettingsConfig::GetIsNewVersionInstallFlag());
    EXPECT_FALSE(UserSettingsConfig::GetShowPreviewerOnStartup());
    EXPECT_FALSE(UserSettingsConfig::UseDefaultConnectedProject());
    EXPECT_FALSE(UserSettingsConfig::GetRssFeedCategory(3));
    EXPECT_FALSE(UserSettingsConfig::GetRssFeedZone(3));
    EXPECT_FALSE(UserSettingsConfig::IsNuclearDesignCodeEnabled());
    EXPECT_FALSE(UserSettingsConfig::IsLumConnectionEnabled());
    EXPECT_FALSE(UserSettingsConfig::GetTestCrashReporting());
    EXPECT_FALSE(UserSettingsConfig::IsPL365Enabled());
    EXPECT_EQ(UserSettingsConfig::GetDefaultConnectedProjectId(), "");
    EXPECT_EQ(UserSettingsConfig::GetDefaultConnectedProjectName(), "");
    EXPECT_EQ(UserSettingsConfig::GetApplicationTheme(), "");
    EXPECT_EQ(UserSettingsConfig::GetRssFeedLastReadInfo(), "");
    EXPECT_EQ(UserSettingsConfig::GetUserNameString(), "");
    EXPECT_THAT(UserSettingsConfig::GetUserEmail().ToStdString(), HasSubstr("@"));
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, R"(Software\Quenlor Systems)")); // reading creates nothing
}

TEST_F(UserSettings, KeepFlagsAsNumbersWhereInstallersLookForThem)
{
    struct Row
    {
        void (*set)(bool);
        bool (*get)();
        const char* key;
        const char* name;
    };
    // clang-format off
    constexpr Row rows[] = {
        {UserSettingsConfig::SetUseRoamingProjectConfig, UserSettingsConfig::UseRoamingProjectConfig, Configurations, "UseRoamingProjectConfig"},
        {UserSettingsConfig::SetUseDefaultProjectForLogging, UserSettingsConfig::UseDefaultProjectForLogging, Configurations, "UseDefaultProjectForLogging"},
        {UserSettingsConfig::EnableRssFeed, UserSettingsConfig::IsRssFeedEnabled, RssSettings, "EnableFeed"},
        {UserSettingsConfig::SetShowPreviewerOnStartup, UserSettingsConfig::GetShowPreviewerOnStartup, RssSettings, "ShowOnStartup"},
        {UserSettingsConfig::SetIsNewVersionInstallFlag, UserSettingsConfig::GetIsNewVersionInstallFlag, Build, "IsNewVersionInstall"},
        {UserSettingsConfig::EnableNuclearDesignCode, UserSettingsConfig::IsNuclearDesignCodeEnabled, LicenseConfig, "NuclearDesignCodes"},
        {UserSettingsConfig::EnableLumConnection, UserSettingsConfig::IsLumConnectionEnabled, LicenseConfig, "LUMConnection"},
    };
    // clang-format on
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.name);
        for (const bool value : {true, false})
        {
            row.set(value);
            EXPECT_EQ(Stored(row.key, row.name), Number(value ? 1 : 0));
            EXPECT_EQ(row.get(), value);
        }
        m_machine.WriteNumber(HKEY_CURRENT_USER, row.key, row.name, 7); // nothing is cached
        EXPECT_TRUE(row.get());
        EXPECT_EQ(Stored(row.key, row.name), Number(7));
        m_machine.WriteText(HKEY_CURRENT_USER, row.key, row.name, "0"); // of an earlier release
        EXPECT_FALSE(row.get());
        EXPECT_EQ(Stored(row.key, row.name), Number(0));
    }
}

TEST_F(UserSettings, KeepTextsWhereInstallersLookForThem)
{
    struct Row
    {
        void (*set)(const Utf8String&);
        Utf8String (*get)();
        const char* key;
        const char* name;
    };
    // clang-format off
    constexpr Row rows[] = {
        {UserSettingsConfig::SetDefaultConnectedProjectId, UserSettingsConfig::GetDefaultConnectedProjectId, Configurations, "DefaultProjectID"},
        {UserSettingsConfig::SetDefaultConnectedProjectName, UserSettingsConfig::GetDefaultConnectedProjectName, Configurations, "DefaultProjectName"},
        {UserSettingsConfig::SetApplicationTheme, UserSettingsConfig::GetApplicationTheme, Configurations, "ThemeColor"},
        {UserSettingsConfig::SetRssFeedLastReadInfo, UserSettingsConfig::GetRssFeedLastReadInfo, RssSettings, "LastRead"},
        {UserSettingsConfig::SetRssFeedUrl, nullptr, RssSettings, "FEEDUrl"},
    };
    // clang-format on
    for (const Row& row : rows)
    {
        const std::string text = std::string{"Br\u00FCcke of "} + row.name;
        row.set(text);
        EXPECT_EQ(Stored(row.key, row.name), (StoredValue{REG_SZ, text + '\0'}));
        EXPECT_TRUE(!row.get || row.get() == text) << row.name;
    }
}

TEST_F(UserSettings, TurnOldTextIntoNumbersAndTakeNothingElseForThem)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Configurations, "UseDefaultProject", "1");
    EXPECT_TRUE(UserSettingsConfig::UseDefaultConnectedProject());
    EXPECT_EQ(Stored(Configurations, "UseDefaultProject"), Number(1));

    m_machine.WriteText(HKEY_CURRENT_USER, RssSettings, "EnableFeed", "no");
    m_machine.WriteNumber(HKEY_CURRENT_USER, Configurations, "ThemeColor", 1);
    EXPECT_TRUE(UserSettingsConfig::IsRssFeedEnabled());
    EXPECT_EQ(UserSettingsConfig::GetApplicationTheme(), "");
    EXPECT_EQ(Stored(RssSettings, "EnableFeed"), (StoredValue{REG_SZ, {"no", 3}}));
}

TEST_F(UserSettings, NameCategoriesAndZonesByAnyIndex)
{
    UserSettingsConfig::SetRssFeedCategory(0, true);
    UserSettingsConfig::SetRssFeedCategory(-1, true);
    UserSettingsConfig::SetRssFeedZone(12, true);
    for (const char* const name : {"FEEDCategory0", "FEEDCategory-1", "FEEDZone12"})
        EXPECT_EQ(Stored(RssSettings, name), Number(1)) << name;
    EXPECT_TRUE(UserSettingsConfig::GetRssFeedCategory(0));
    EXPECT_TRUE(UserSettingsConfig::GetRssFeedCategory(-1));
    EXPECT_FALSE(UserSettingsConfig::GetRssFeedCategory(12));
    EXPECT_TRUE(UserSettingsConfig::GetRssFeedZone(12));
    EXPECT_FALSE(UserSettingsConfig::GetRssFeedZone(1));
    UserSettingsConfig::SetRssFeedZone(12, false);
    EXPECT_FALSE(UserSettingsConfig::GetRssFeedZone(12));
}

TEST_F(UserSettings, OfInstallersAndSupportLieOutsideTheUsersKey)
{
    constexpr char UsersKey[] = R"(Software\Quenlor Systems\FraxoPro\22.00.00)";
    m_machine.WriteText(HKEY_CURRENT_USER, UsersKey, "UserName", "not here");
    m_machine.WriteNumber(HKEY_CURRENT_USER, UsersKey, "TestCrashReporting", 1);
    EXPECT_EQ(UserSettingsConfig::GetUserNameString(), "");
    EXPECT_FALSE(UserSettingsConfig::GetTestCrashReporting());

    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "UserName", "A. User");
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor\Support)", "UserEmail", ""); // empty, but stored
    m_machine.WriteNumber(HKEY_CURRENT_USER, R"(SOFTWARE\Quenlor\FraxoPro\22.00.00)", "TestCrashReporting", 1);
    EXPECT_EQ(UserSettingsConfig::GetUserNameString(), "A. User");
    EXPECT_EQ(UserSettingsConfig::GetUserEmail(), "");
    EXPECT_TRUE(UserSettingsConfig::GetTestCrashReporting());
}

TEST_F(UserSettings, StayAsTheyAreWhenTheyCannotBeWritten)
{
    UserSettingsConfig::SetRssFeedLastReadInfo("before");
    const auto change = []
    {
        UserSettingsConfig::SetRssFeedLastReadInfo("after");
        UserSettingsConfig::EnableRssFeed(false);
    };
    m_machine.WhileReadOnly(HKEY_CURRENT_USER, RssSettings, change);
    EXPECT_EQ(UserSettingsConfig::GetRssFeedLastReadInfo(), "before");
    EXPECT_TRUE(UserSettingsConfig::IsRssFeedEnabled());
}

TEST_F(UserSettings, KeepTheDocumentServiceInTheEnvironmentAlone)
{
    constexpr char Variable[] = "FRAXO_PRO_PL365";
    m_machine.SetEnvironment(Variable, {}); // given back at the end
    UserSettingsConfig::EnablePL365(true);
    EXPECT_STREQ(std::getenv(Variable), "1");
    EXPECT_TRUE(UserSettingsConfig::IsPL365Enabled());
    UserSettingsConfig::EnablePL365(false);
    EXPECT_EQ(std::getenv(Variable), nullptr);
    EXPECT_FALSE(UserSettingsConfig::IsPL365Enabled());
    m_machine.SetEnvironment(Variable, "0"); // any text will do
    EXPECT_TRUE(UserSettingsConfig::IsPL365Enabled());
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, R"(Software\Quenlor Systems)"));
}

struct FontRow
{
    const char* name;
    const char* code;
    const char* font;
};

class GetApplicationFont : public UserSettings, public ::testing::WithParamInterface<FontRow>
{
};

TEST_P(GetApplicationFont, IsTheStoredOneOrGoesByTheLanguage)
{
    m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", GetParam().code);
    EXPECT_EQ(UserSettingsConfig::GetApplicationFont(), GetParam().font);
    for (const char* const font : {"Arial", ""})
    {
        m_machine.WriteText(HKEY_CURRENT_USER, Configurations, "ThemeFont", font);
        EXPECT_EQ(UserSettingsConfig::GetApplicationFont(), font);
    }
}

INSTANTIATE_TEST_SUITE_P(Language, GetApplicationFont,
                         ::testing::Values(FontRow{"Chinese", "zh-cn", "Microsoft YaHei"},
                                           FontRow{"ChineseInCapitals", "zh-CN", "Segoi UI"}, // spelled so
                                           FontRow{"AnotherChinese", "zh-tw", "Segoi UI"},
                                           FontRow{"Another", "ja", "Segoi UI"}),
                         [](const auto& row) { return std::string{row.param.name}; });
} // namespace
