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

class IsDevFeatureEnabled : public ::testing::Test
{
protected:
    static int Ask() { return DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId::MassModelGenerator); }
    void SetVariable(const char* value) { m_machine.SetEnvironment("FPRO_FEATURE_MASS_MODEL_GENERATOR", value); }
    void WriteIni(const std::string& lines) const { WriteFile(m_ini, "[DEV_FEATURES]\nFPRO_FEATURE_" + lines); }

    ScratchMachine m_machine;
    const std::filesystem::path m_ini =
        NativePath(m_machine.ProductFolder(ShellFolder::LocalAppData) + R"(Default\)" + ProductIni);
};

TEST_F(IsDevFeatureEnabled, IsTheIniValueAsItIs)
{
    WriteIni("REVULYTICS=2\n"
             "FPRO_FEATURE_CHINESE_WIND_LOAD_GB50009_2012=-1\n"
             "fpro_feature_chinese_steel_design=1\n");
    std::vector<int> answers;
    for (const int id : {-1, 0, 1, 2, 3, 4, 5, 1000}) // the first and the last are unknown
        answers.push_back(DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId{id}));
    EXPECT_THAT(answers, ::testing::ElementsAre(0, 2, 0, 0, 0, -1, 0, 0));
}

TEST_F(IsDevFeatureEnabled, AVariableWinsOverTheIniFile)
{
    WriteIni("MASS_MODEL_GENERATOR=7");
    for (const auto& [variable, answer] : {std::pair{"-3", 0}, std::pair{"5", 1}, std::pair{"", 7}})
    {
        SetVariable(variable);
        EXPECT_EQ(Ask(), answer) << variable;
    }
    WriteIni("MASS_MODEL_GENERATOR=on");
    EXPECT_THROW(Ask(), std::invalid_argument);
    SetVariable(" ");
    EXPECT_THROW(Ask(), std::invalid_argument);
    SetVariable("2147483648");
    EXPECT_THROW(Ask(), std::out_of_range);
}

// A switch must never keep a program from starting.
TEST_F(IsDevFeatureEnabled, IsOffWhenTheIniFileCannotBeProvided)
{
    EXPECT_EQ(Ask(), 0) << "no default";
    m_machine.BreakShellFolder(ShellFolder::LocalAppData);
    EXPECT_EQ(Ask(), 0);
}
} // namespace
