#include "VersionConfig.h"

#include <gtest/gtest.h>

#include "support/Printers.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::VersionConfig;

TEST(CompareVersions, ComparesPartsAsNumbers)
{
    EXPECT_EQ(VersionConfig::CompareVersions("7.10.0.0", "7.9.0.115"), 1);
    EXPECT_EQ(VersionConfig::CompareVersions("7.9.0.115", "7.10.0.0"), -1);
    EXPECT_EQ(VersionConfig::CompareVersions("1.0", "1.0.0.0"), 0);
    EXPECT_EQ(VersionConfig::CompareVersions("4294967298.0.0.0", "2.0.0.0"), 0) << "beyond int: cut to 16 bits";
}

TEST(VersionConfig, AgreesWithTheBuildOnTheRelease)
{
    EXPECT_EQ(VersionConfig::GetVersionStamp(), R"(FraxoPro\)" RELEASE ".00.00");
}

// This program's version resource says 7.9.0.115; the other test programs have none.
TEST(VersionConfig, PadsTheFileVersionToTwoDigits)
{
    EXPECT_EQ(VersionConfig::GetProductVersion(), "07.09.00.115");
    EXPECT_EQ(VersionConfig::GetBuildNumber(), "00");
}
} // namespace
