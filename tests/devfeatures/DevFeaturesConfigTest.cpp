#include "DevFeaturesConfig.h"

#include <filesystem>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::DevFeatureId;
using Quenlor::Fraxo::SharedUtilities::Native::DevFeaturesConfig;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

constexpr char Flag[] = "FPRO_FEATURE_MASS_MODEL_GENERATOR";

int Ask()
{
    return DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId::MassModelGenerator);
}

class IsDevFeatureEnabled : public ::testing::Test
{
protected:
    void SetVariable(const char* value) { m_machine.SetEnvironment(Flag, value); }
    void WriteIni(const std::string& lines) const { WriteFile(m_ini, "[DEV_FEATURES]\n" + lines); }
    void WriteIniValue(const std::string& value) const { WriteIni(Flag + ('=' + value)); }

    static void ExpectNoNumber(const char* value)
    {
        EXPECT_THAT(Ask, ThrowsMessage<std::invalid_argument>(StrEq("invalid stoi argument"))) << value;
    }

    static void ExpectOutOfRange(const char* value)
    {
        EXPECT_THAT(Ask, ThrowsMessage<std::out_of_range>(StrEq("stoi argument out of range"))) << value;
    }

    ScratchMachine m_machine;
    const std::filesystem::path m_ini =
        NativePath(m_machine.ProductFolder(ShellFolder::LocalAppData) + R"(Default\FraxoPro22.00.00.ini)");
    const std::filesystem::path m_installed =
        NativePath(m_machine.ProductFolder(ShellFolder::ProgramData) + "FraxoPro22.00.00.ini");
};

TEST_F(IsDevFeatureEnabled, IsTheIniValueOfTheFlagAsItIs)
{
    WriteIni("FPRO_FEATURE_REVULYTICS=2\n"
             "FPRO_FEATURE_CHINESE_WIND_LOAD_GB50009_2012=-1\n"
             "FPRO_FEATURE_MASS_MODEL_GENERATOR=0\n"
             "fpro_feature_chinese_steel_design=1\n"
             "[OTHER]\nFPRO_FEATURE_CHINESE_RESPONSE_SPECTRUM_2010=1\n");
    int answers[6];
    for (int id = 0; id < 6; ++id)
        answers[id] = DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId{id});
    EXPECT_THAT(answers, ::testing::ElementsAre(2, 0, 0, 0, -1, 0));
}

TEST_F(IsDevFeatureEnabled, AVariableWinsInBothDirections)
{
    WriteIniValue("1");
    for (const char* const value : {"0", "-3", "-2147483648", "+0x1"})
    {
        SetVariable(value);
        EXPECT_EQ(Ask(), 0) << value;
    }
    WriteIniValue("no number, which nobody looks at");
    for (const char* const value : {"1", "5", " +2", "2147483647", "1.9"})
    {
        SetVariable(value);
        EXPECT_EQ(Ask(), 1) << value;
    }
    SetVariable(""); // is not set
    WriteIniValue("7");
    EXPECT_EQ(Ask(), 7);
}

TEST_F(IsDevFeatureEnabled, WhatIsNoIntIsAFailureFromBothSources)
{
    for (const char* const value : {"", "on"})
    {
        WriteIniValue(value);
        ExpectNoNumber(value);
    }
    WriteIniValue("2147483648");
    ExpectOutOfRange("INI");

    WriteIniValue("1");
    for (const char* const value : {"x", " ", "-"})
    {
        SetVariable(value);
        ExpectNoNumber(value);
    }
    for (const char* const value : {"2147483648", "-2147483649", "99999999999999999999"})
    {
        SetVariable(value);
        ExpectOutOfRange(value);
    }
}

// A switch must never keep a program from starting.
TEST_F(IsDevFeatureEnabled, IsOffWhenTheUsersIniFileCannotBeProvided)
{
    EXPECT_EQ(Ask(), 0) << "none is installed";

    WriteFile(m_installed, "[DEV_FEATURES]\nFPRO_FEATURE_MASS_MODEL_GENERATOR=3\n");
    const std::filesystem::path folder = m_machine.Root() / "LocalAppData" / "Quenlor";
    WriteFile(folder, "a file in the place of a folder");
    EXPECT_EQ(Ask(), 0) << "the folder cannot be made";
    std::filesystem::remove(folder);
    EXPECT_EQ(Ask(), 3);
    WriteIniValue("4");
    EXPECT_EQ(Ask(), 4) << "the user's copy";
    std::filesystem::remove(m_ini);
    std::filesystem::create_directory(m_ini);
    EXPECT_EQ(Ask(), 0) << "a folder in the place of the file";

    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    EXPECT_EQ(Ask(), 0) << "nobody can say where the installed one is";
    SetVariable("1");
    EXPECT_EQ(Ask(), 1) << "a variable needs no file";
}

TEST_F(IsDevFeatureEnabled, IsOffForAnUnknownFeatureWithoutReadingAnything)
{
    WriteFile(m_installed, "");
    for (const int id : {6, -1, -2147483647 - 1})
        EXPECT_EQ(DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId{id}), 0) << id;
    EXPECT_FALSE(exists(m_ini));
}
} // namespace
