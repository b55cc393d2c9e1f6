#include "CoreUtilities.h"

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace
{
TEST(AreFloatNumbersEqual, ScalesTheToleranceByTheTruncatedExponent)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    EXPECT_TRUE(AreFloatNumbersEqual(0.0F, -0.0F, 0.0F));
    EXPECT_FALSE(AreFloatNumbersEqual(1.0F, 1.0F, 0.0F));        // a difference equal to the tolerance
    EXPECT_TRUE(AreFloatNumbersEqual(1000.0F, 1000.4F, 0.001F)); // 512 * 0.001
    EXPECT_FALSE(AreFloatNumbersEqual(1000.6F, 1000.0F, 0.001F));
    EXPECT_TRUE(AreFloatNumbersEqual(0.3F, 0.3004F, 0.001F)); // log2 is -1.74, cut to -1: rounded down, half of that
    EXPECT_FALSE(AreFloatNumbersEqual(infinity, infinity, 1.0F));
}

TEST(FormatFloatToString, WritesAsManyDigitsAsAskedFor)
{
    EXPECT_EQ(FormatFloatToString(-0.125F, 2), "-0.12");
    EXPECT_EQ(FormatFloatToString(1e10F, 1), "10000000000.0"); // never in scientific notation
}

TEST(EnvironmentVariable, IsReadBackAndRemovedByAnEmptyValue)
{
    const std::string name = "FRAXO_TEST_VARIABLE";
    for (const std::string& value : {std::string{"a value with = and blanks"}, std::string(20000, 'x'), std::string{}})
    {
        SetEnvironmentVariableValue(name, value);
        EXPECT_EQ(GetEnvironmentVariableValue(name), value);
    }
}

TEST(LeftOfAndRightOf, SplitATextAroundAPosition)
{
    std::string text = "a=b";
    EXPECT_EQ(LeftOf(text, 1), "a");
    EXPECT_EQ(RightOf(text, 1), "b");
    EXPECT_EQ(RightOf(text, 2), "");
    EXPECT_THROW(RightOf(text, 3), std::out_of_range);
    for (const std::uint64_t position : {std::uint64_t{4}, std::numeric_limits<std::uint64_t>::max()})
    {
        EXPECT_EQ(LeftOf(text, position), "a=b");
        EXPECT_EQ(RightOf(text, position), "a=b");
    }
}

TEST(TrimString, RemovesTheBytesOfTheSetFromBothEnds)
{
    const std::string set = "\xFF \t";
    std::string text = "\xFF \tA b\t";
    EXPECT_EQ(&TrimString(text, set), &text);
    EXPECT_EQ(text, "A b");
    EXPECT_EQ(TrimString(text = " \t ", set), "");
    EXPECT_EQ(TrimLeft(text = " a ", set), "a ");
    EXPECT_EQ(TrimRight(text = " a ", set), " a");
}
} // namespace
