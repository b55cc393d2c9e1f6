#include "usersettings/InstalledVersion.h"

#include <string>

#include "UserSettingsConfig.h"
#include "VersionConfig.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;

class InstalledVersion : public InstallationTest
{
protected:
    void Record(const std::string& release, std::string_view version) const
    {
        m_machine.WriteText(HKEY_CURRENT_USER, (Releases + release + R"(\Build)").c_str(), "ProductVersion", version);
    }

    const std::string Releases = R"(Software\Quenlor Systems\FraxoPro\)";
};

TEST_F(InstalledVersion, IsThatOfTheNewestEarlierReleaseThatRecordedOne)
{
    EXPECT_EQ(LastVersionBefore("24.00.00"), "");
    m_machine.WriteText(HKEY_CURRENT_USER, (Releases + "20.00.00").c_str(), "Any", "");
    Record("19.00.00", "19.00.00.01");
    EXPECT_EQ(LastVersionBefore("24.00.00"), "") << "nothing below 21 counts";

    m_machine.WriteText(HKEY_CURRENT_USER, (Releases + "21.00.00").c_str(), "Any", "");
    Record("21.00.00", "21.05.00.09"); // the key alone counts
    EXPECT_EQ(LastVersionBefore("24.00.00"), "21.00.00.00");

    Record("22.00.00", "22.05.00.41");
    Record("23.00.00", "");
    EXPECT_EQ(LastVersionBefore("24.00.00"), "22.05.00.41");
    EXPECT_EQ(LastVersionBefore("22.00.00"), "21.00.00.00") << "only what came before";
    EXPECT_EQ(LastVersionBefore("unknown"), "21.00.00.00");

    Record("100.00.00", "100.01.00.00");
    Record("09.00.00", "9");
    EXPECT_EQ(LastVersionBefore("101.00.00"), "100.01.00.00");
}

TEST_F(InstalledVersion, IsTheCurrentOneOnceThatIsRecorded)
{
    EXPECT_EQ(UserSettingsConfig::GetLastInstalledProductVersion(), "");
    m_machine.WriteText(HKEY_CURRENT_USER, (Releases + "21.00.00").c_str(), "Any", "");
    EXPECT_EQ(UserSettingsConfig::GetLastInstalledProductVersion(), "21.00.00.00");
    Record(Release, "22.01.00.07"); // of an earlier build of this release
    EXPECT_EQ(UserSettingsConfig::GetLastInstalledProductVersion(), "22.01.00.07");

    UserSettingsConfig::SetIsNewVersionInstallFlag(false);
    UserSettingsConfig::SetCurrentInstalledProductVersion();
    EXPECT_EQ(UserSettingsConfig::GetLastInstalledProductVersion(), VersionConfig::GetProductVersion());
    EXPECT_TRUE(UserSettingsConfig::GetIsNewVersionInstallFlag());
}
} // namespace
