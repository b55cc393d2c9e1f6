#include "VersionConfig.h"

#include <gtest/gtest.h>

#include "support/Printers.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::VersionConfig;

TEST(CompareVersions, ComparesPartsAsNumbersOfSixteenBits)
{
    const struct
    {
        const char* first;
        const char* second;
        int result;
    } rows[] = {
        {"7.10.0.0", "7.9.0.115", 1}, // numbers, not text
        {"1.0", "1.0.0.0", 0},        {"1.0.0.1", "1.0.0.2", -1}, {"4294967298.0.0.0", "2.0.0.0", 0}, // beyond int
        {"1.-1.0.0", "1.2.0.0", 1},                                                                   // unsigned
        {"abc", "0.0.0.1", -1},       {"2 .9", "2.1", -1}, // what does not fit ends the reading
        {"1.2.3.4.5", "1.2.3.4", 0},
    };
    for (const auto& [first, second, result] : rows)
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
