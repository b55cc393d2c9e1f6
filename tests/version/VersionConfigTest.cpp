#include "VersionConfig.h"

#include <tuple>

#include <gtest/gtest.h>

#include "support/Printers.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::VersionConfig;

TEST(CompareVersions, ComparesPartsAsNumbersOfSixteenBits)
{
    for (const auto& [first, second, result] :
         {std::tuple{"7.10.0.0", "7.9.0.115", 1},                                        // numbers, not text
          std::tuple{"1.0", "1.0.0.0", 0}, std::tuple{"4294967298.0.0.0", "2.0.0.0", 0}, // beyond int
          std::tuple{"1.-1.0.0", "1.2.0.0", 1},                                          // unsigned
          std::tuple{"2 .9", "2.1", -1}})                                                // what does not fit ends it
    {
        EXPECT_EQ(VersionConfig::CompareVersions(first, second), result) << first << ", " << second;
        EXPECT_EQ(VersionConfig::CompareVersions(second, first), -result);
    }
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
