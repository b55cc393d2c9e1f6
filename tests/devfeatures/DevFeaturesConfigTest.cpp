#include "DevFeaturesConfig.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/Release.h"
#include "support/ScratchMachine.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::DevFeatureId;
using Quenlor::Fraxo::SharedUtilities::Native::DevFeaturesConfig;

constexpr char Flag[] = "FPRO_FEATURE_MASS_MODEL_GENERATOR";

int Ask()
{
    return DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId::MassModelGenerator);
}

class IsDevFeatureEnabled : public ::testing::Test
{
protected:
    void SetVariable(const char* value) { m_machine.SetEnvironment(Flag, value); }
    void WriteIni(const std::string& value) const { WriteFile(m_ini, "[DEV_FEATURES]\n" + (Flag + ('=' + value))); }

    ScratchMachine m_machine;
    const std::filesystem::path m_ini =
        NativePath(m_machine.ProductFolder(ShellFolder::LocalAppData) + R"(Default\)" + ProductIni);
};

TEST_F(IsDevFeatureEnabled, IsTheIniValueOfTheFlagAsItIs)
{
    WriteFile(m_ini, "[DEV_FEATURES]\n"
                     "FPRO_FEATURE_REVULYTICS=2\n"
                     "FPRO_FEATURE_CHINESE_WIND_LOAD_GB50009_2012=-1\n"
                     "fpro_feature_chinese_steel_design=1\n");
    std::vector<int> answers;
    for (const int id : {-1, 0, 1, 2, 3, 4, 5, 1000}) // the first and the last are unknown
        answers.push_back(DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId{id}));
    EXPECT_THAT(answers, ::testing::ElementsAre(0, 2, 0, 0, 0, -1, 0, 0));
}

TEST_F(IsDevFeatureEnabled, AVariableWinsInBothDirections)
{
    WriteIni("1");
    SetVariable("-3");
    EXPECT_EQ(Ask(), 0);
    WriteIni("no number, which nobody looks at");
    SetVariable("5");
    EXPECT_EQ(Ask(), 1);
    SetVariable(""); // is not set
    WriteIni("7");
    EXPECT_EQ(Ask(), 7);
}

TEST_F(IsDevFeatureEnabled, WhatIsNoIntIsAFailureFromBothSources)
{
    WriteIni("on");
    EXPECT_THROW(Ask(), std::invalid_argument);
    SetVariable(" ");
    EXPECT_THROW(Ask(), std::invalid_argument);
    SetVariable("2147483648");
    EXPECT_THROW(Ask(), std::out_of_range);
}

// A switch must never keep a program from starting.
TEST_F(IsDevFeatureEnabled, IsOffWhenTheUsersIniFileCannotBeProvided)
{
    WriteIni("3");
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    EXPECT_EQ(Ask(), 0) << "nobody can say where the installed one is";
    SetVariable("1");
    EXPECT_EQ(Ask(), 1) << "a variable needs no file";
}
} // namespace
