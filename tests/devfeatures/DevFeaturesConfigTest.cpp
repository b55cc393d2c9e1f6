#include "DevFeaturesConfig.h"

#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/ScratchMachine.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::DevFeatureId;
using Quenlor::Fraxo::SharedUtilities::Native::DevFeaturesConfig;

TEST(IsDevFeatureEnabled, IsTheIniValueUnlessAVariableIsSet)
{
    ScratchMachine machine;
    const auto ask = [](int id) { return DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId{id}); };
    EXPECT_EQ(ask(1), 0) << "no default: a switch must never keep a program from starting";

    WriteFile(NativePath(machine.ProductFolder(ShellFolder::LocalAppData) + R"(Default\)" + ProductIni),
              "[DEV_FEATURES]\nFPRO_FEATURE_REVULYTICS=2\nFPRO_FEATURE_CHINESE_WIND_LOAD_GB50009_2012=-1\n"
              "fpro_feature_chinese_steel_design=1\nFPRO_FEATURE_MASS_MODEL_GENERATOR=on\n");
    std::vector<int> answers;
    for (const int id : {-1, 0, 1, 2, 3, 4, 1000}) // the first and the last are unknown
        answers.push_back(ask(id));
    EXPECT_THAT(answers, ::testing::ElementsAre(0, 2, 0, 0, 0, -1, 0));
    EXPECT_THROW(ask(5), std::invalid_argument);

    for (const auto& [variable, answer] : {std::pair{"-3", 0}, std::pair{"5", 1}, std::pair{"", 2}})
    {
        machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", variable);
        EXPECT_EQ(ask(0), answer) << variable;
    }
    machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", " ");
    EXPECT_THROW(ask(0), std::invalid_argument);
    machine.BreakShellFolder(ShellFolder::LocalAppData);
    EXPECT_EQ(ask(4), 0);
}
} // namespace
