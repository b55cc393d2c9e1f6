#include "CoreUtilities.h"

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

namespace
{
using ::testing::ThrowsMessage;

constexpr float Infinity = std::numeric_limits<float>::infinity();

TEST(AreFloatNumbersEqual, ScalesTheToleranceByTheTruncatedExponent)
{
    const struct
    {
        float a;
        float b;
        float epsilon;
        bool areEqual;
    } rows[] = {
        {0.0F, -0.0F, 0.0F, true},
        {1.0F, 1.0F, 0.0F, false},        // a difference equal to the tolerance
        {1000.0F, 1000.4F, 0.001F, true}, // 512 * 0.001
        {1000.0F, 1000.6F, 0.001F, false},
        {0.3F, 0.3004F, 0.001F, true},  // log2 is -1.74, cut to -1: rounding down would give half the tolerance
        {0.75F, 0.7509F, 0.001F, true}, // everything between 0.5 and 2 has the exponent 0
        {0.5F, 0.4994F, 0.001F, false},
        {-1000.0F, 1000.0F, 0.001F, false},
        {Infinity, Infinity, 1.0F, false},
        {std::numeric_limits<float>::quiet_NaN(), 1.0F, 1.0F, false},
    };
    for (const auto& [a, b, epsilon, areEqual] : rows)
        EXPECT_EQ(AreFloatNumbersEqual(a, b, epsilon), areEqual) << a << " and " << b;
}

TEST(FormatFloatToString, WritesAsManyDigitsAsAskedFor)
{
    EXPECT_EQ(FormatFloatToString(2.0F, 0), "2");
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
    for (const char* const bad : {"", "A=B"}) // cannot be set
        SetEnvironmentVariableValue(bad, "x");
    EXPECT_EQ(GetEnvironmentVariableValue(""), "");
}

TEST(LeftOfAndRightOf, SplitATextAroundAPosition)
{
    const std::uint64_t last = std::numeric_limits<std::uint64_t>::max();
    struct
    {
        std::string text;
        std::uint64_t position;
        std::string left;
        std::string right;
    } rows[] = {
        {"a=b", 1, "a", "b"}, {"abc", 2, "ab", ""},        {"abc", 4, "abc", "abc"},
        {"", 0, "", ""},      {"abc", last, "abc", "abc"},
    };
    for (auto& [text, position, left, right] : rows)
    {
        EXPECT_EQ(LeftOf(text, position), left) << text << " at " << position;
        EXPECT_EQ(RightOf(text, position), right) << text << " at " << position;
    }
    std::string text = "abc";
    EXPECT_THAT([&] { RightOf(text, 3); }, ThrowsMessage<std::out_of_range>("invalid string position"));
}

TEST(TrimString, RemovesTheBytesOfTheSetFromBothEnds)
{
    const std::string set = "\xFF \t";
    std::string text = "\xFF \tA b\t";
    EXPECT_EQ(&TrimString(text, set), &text);
    EXPECT_EQ(text, "A b");
    EXPECT_EQ(TrimString(text = " \t ", set), "");
    EXPECT_EQ(TrimString(text = std::string{"\0a\0", 3}, std::string{"\0", 1}), "a");
    EXPECT_EQ(TrimLeft(text = " a ", set), "a ");
    EXPECT_EQ(TrimRight(text = " a ", set), " a");
}
} // namespace
