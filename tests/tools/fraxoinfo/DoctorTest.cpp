#include "Doctor.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>

#include "Features.h"
#include "Installation.h"
#include "LogSetup.h"
#include "SettledOperations.h"

namespace
{
using namespace FraxoInfo;
using namespace std::string_literals;
using std::filesystem::path;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

using Doctor = Installation;

constexpr char Healthy[] = "Healthy: nothing needs attention.\n";

TEST_F(Doctor, FindsNothingInAHealthyInstallation)
{
    EXPECT_EQ(Format(Examine()), Healthy);
    WriteFile(MachineData() / "Sections/Custom.ini", ""); // an empty default has an empty copy
    AskForEverything(true);
    Choose(HKEY_CURRENT_USER, "CurrentLanguage", "de");
    for (const char* const older : {R"(Software\Quenlor Systems\FraxoPro\1.00.00\Configurations)",
                                    R"(Software\Quenlor\Fraxo Pro\9.50\Configurations)"})
        m_machine.WriteText(HKEY_CURRENT_USER, older, "ThemeColor", "Dark"); // as an upgrade leaves them
    EXPECT_EQ(Format(Examine()), Healthy);
    EXPECT_EQ(Format({{"P.", "R."}}), "! P.\n  R.\n\n1 problem needs attention.\n");
}

struct Damage
{
    const char* name;
    void (*inflict)(Installation&);
    std::string problem;
    std::string remedy{};
};

class DamagedInstallation : public Installation, public ::testing::WithParamInterface<Damage>
{
};

TEST_P(DamagedInstallation, GivesOneFindingThatNamesTheDamage)
{
    GetParam().inflict(*this);
    const auto findings = Examine();
    ASSERT_EQ(findings.size(), 1U) << Format(findings);
    EXPECT_THAT(findings[0].problem, HasSubstr(GetParam().problem));
    EXPECT_THAT(findings[0].remedy, HasSubstr(GetParam().remedy));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Doctor, DamagedInstallation, ::testing::Values(
    Damage{"Record", [](Installation& it) { it.m_machine.DeleteKey(HKEY_CLASSES_ROOT, InstallationKey); }, R"("RootDir" of HKEY_CLASSES_ROOT\)" + InstallationKey + " is missing"},
    Damage{"Root", [](Installation& it) { remove_all(it.Root()); }, "root does not exist"},
    Damage{"RelativeRoot", [](Installation& it) { it.Install("relative"); }, R"(root is not an absolute path: relative\)"},
    Damage{"DefaultBelowTheRoot", [](Installation& it) { remove(it.Root() / "FRAXO/default.stp"); }, "GetStWizardDefaultStpPath"},
    Damage{"EmptyUsersFile", [](Installation& it) { WriteFile(it.UserDefaults() / "LiveLoad.veh", ""); }, "file is empty"},
    Damage{"FolderInPlaceOfAUsersFile", [](Installation& it) { create_directories(it.UserDefaults() / "LiveLoad.veh"); }, "file cannot be read"},
    Damage{"UsersLanguage", [](Installation& it) { it.Choose(HKEY_CURRENT_USER, "CurrentLanguage", "fr"); }, R"(user's language "fr" is not installed)"},
    Damage{"MachinesLanguage", [](Installation& it) { it.Choose(HKEY_LOCAL_MACHINE, "DefaultLanguage", "EN"); }, R"(machine's default language "EN" is not installed)"},
    Damage{"LanguageFolder", [](Installation& it) { remove_all(it.Root() / "Resource/Language/de"); }, R"(language "de" has no resource folder)"},
    Damage{"UnusableFeature", [](Installation& it) { it.m_machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", "yes"); }, "FPRO_FEATURE_REVULYTICS has an unusable value in the environment"},
    Damage{"OverriddenFeature", [](Installation& it) { it.m_machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", "1"); }, "FPRO_FEATURE_REVULYTICS=1 overrides the INI file, which says nothing"},
    Damage{"UnknownFeatureVariable", [](Installation& it) { it.m_machine.SetEnvironment("FPRO_FEATURE_REVULITICS", "1"); }, "FPRO_FEATURE_REVULITICS does not belong to a feature", "mean FPRO_FEATURE_REVULYTICS?"},
    Damage{"UnknownFeature", [](Installation& it) { WriteFile(it.MachineData() / ProductIni, "[DEV_FEATURES]\nFPRO_FEATURE_REVULITICS=1\n"); }, "FPRO_FEATURE_REVULITICS\" in section DEV_FEATURES", "FPRO_FEATURE_REVULYTICS"},
    Damage{"ForcedLanguage", [](Installation& it) { it.m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "en"); it.Choose(HKEY_CURRENT_USER, "CurrentLanguage", "fr"); }, "FRAXO_PRO_LANGUAGE=en overrides the chosen language (the user's language: fr, the"},
    Damage{"SectionsVariable", [](Installation& it) { it.m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", it.m_bases.machineData + "Sections\\"); }, "replaces the installed section database"},
    Damage{"RootVariable", [](Installation& it) { it.m_machine.SetEnvironment("FRAXO_PRO_ROOT_DIRECTORY", "/nowhere"); }, "this program is not in it"},
    Damage{"RunningFromOutput", [](Installation& it) { it.RunFromOutput(); }, "Files missing there: 1", "Remove the variable"},
    Damage{"NewerRelease", [](Installation& it) { it.m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor Systems\FraxoPro\99.00.00\Configurations)", "ThemeColor", "Dark"); }, R"(Quenlor Systems\FraxoPro\99.00.00\Configurations, where this release does not look: ThemeColor)"},
    Damage{"OtherSpelling", [](Installation& it) { it.m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor\Fraxo Pro\)" + Release + R"(\Configurations)", "ThemeColor", "Dark"); }, "where this release does not look", R"(HKEY_CURRENT_USER\)" + SettingsKey + R"(\Configurations)"},
    Damage{"OtherType", [](Installation& it) { it.m_machine.WriteNumber(HKEY_CURRENT_USER, SettingsKey + R"(\Configurations)", "ThemeColor", 1); }, "ThemeColor is not used: REG_DWORD, text expected"},
    Damage{"ByteOrderMark", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "\xEF\xBB\xBF[SECTION]\nkey=1\n"); }, "starts with a byte-order mark"},
    Damage{"Utf16", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "\xFF\xFE[\0S\0]\0"s); }, "starts with a byte-order mark"},
    Damage{"Nuls", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "[SECTION]\nkey=\0\n"s); }, "Line 2 of this user's file"},
    Damage{"NoSection", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "; nothing\n"); }, "has no sections, unlike its default"},
    Damage{"NoBracket", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "[SECTION\nkey=1\n"); }, R"(no closing bracket: read as the header of section "SECTIO")"},
    Damage{"NoLogConfiguration", [](Installation& it) { remove(it.MachineData() / "FraxoPro.log.xml"); }, "The log configuration is missing"},
    Damage{"SilentLog", [](Installation& it) { WriteFile(it.MachineData() / "FraxoPro.log.xml", "<logging><appender name='n' type='null'/><root level='info'><appender-ref ref='n'/></root></logging>"); }, "sends no record anywhere"},
    Damage{"LogFolderIsAFile", [](Installation& it) { WriteFile(it.MachineData() / "Logs", ""); WriteFile(it.MachineData() / "FraxoPro.log.xml", "<logging><appender name='f' type='file' path='Logs/a.log'/><root level='info'><appender-ref ref='f'/></root></logging>"); }, "The log file cannot be written"},
    Damage{"LogConfiguration", [](Installation& it) { WriteFile(it.MachineData() / "FraxoPro.log.xml", "<logging>\n<rot/></logging>"); }, "FraxoPro.log.xml:2: <rot>"},
    Damage{"UsersClasses", [](Installation& it) { for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) it.m_machine.WriteText(root, R"(Software\Classes\)" + InstallationKey, "RootDir", it.m_bases.root); }, "hides the machine's installation record"},
    Damage{"MachinesShellFolder", [](Installation& it) { it.m_machine.BreakShellFolder(ShellFolder::ProgramData); }, "Could not get ProgramData folder"}),
    [](const auto& row) { return std::string{row.param.name}; });
// clang-format on

TEST_F(Doctor, CreatesNothingUnlessFilesAreToBeProvided)
{
    const auto answers = AskForEverything(false);
    Examine();
    ReadFeatures();
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "LocalAppData"));
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, R"(Software\Quenlor Systems)"));

    const auto provided = AskForEverything(true);
    ExpectSameValues(answers, provided);
    for (const Answer& answer : provided)
        EXPECT_TRUE(answer.failure.empty() && (!answer.operation->userFile || answer.exists == true))
            << answer.operation->name << Shown(answer);
}

TEST_F(Doctor, SaysWhatDecidedAFeature)
{
    WriteFile(MachineData() / ProductIni, "[DEV_FEATURES]\nFPRO_FEATURE_CHINESE_STEEL_DESIGN=-1\n"
                                          "FPRO_FEATURE_CHINESE_WIND_LOAD_GB50009_2012=on\n");
    m_machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", "5");
    const std::string installed = "INI file " + m_bases.machineData + ProductIni;
    const std::string table = Format(ReadFeatures());
    EXPECT_THAT(table, HasSubstr("REVULYTICS                       on   environment\n"));
    EXPECT_THAT(table, HasSubstr("CHINESE_STEEL_DESIGN             on   " + installed));
    EXPECT_THAT(table, HasSubstr("unusable value in the " + installed + ": invalid stoi argument\n"));

    WriteFile(UserDefaults() / ProductIni, "[DEV_FEATURES]\nFPRO_FEATURE_INTEGRATED_CHINESE_STEEL_DESIGN=2\n");
    const auto features = ReadFeatures();
    EXPECT_EQ(features[2].source, "INI file " + m_bases.userData + R"(Default\)" + ProductIni);
    EXPECT_EQ(features[1].source, "off by default"); // the installed default is not read any more
}
class LogOfAProgram : public Installation
{
public:
    LogSetup Examine(bool expand = false) const
    {
        return ExamineLog(Quenlor::QnFileName{m_programs + "Editor.exe"}, expand);
    }

    void Write(const std::string& xml) const { WriteFile(MachineData() / "FraxoPro.log.xml", xml); }

    const std::string m_programs = m_machine.Folder("Programs");
};

TEST_F(LogOfAProgram, IsSetUpByTheFileThatApplies)
{
    const std::string beside = m_programs + "FraxoPro.log.xml", machines = m_bases.machineData + "FraxoPro.log.xml";
    remove(NativePath(machines));
    EXPECT_EQ(Format(Examine()), "Logger         Editor\nConfiguration  " + machines +
                                     "  [missing]\nChosen because this is missing beside the executable: " + beside +
                                     R"(
Level          warning
Appender       "console" to standard error
Appender       "debugger" to the debugger
)");
    WriteFile(NativePath(beside), "<logging/>");
    EXPECT_THAT(Format(Examine()),
                HasSubstr("Configuration  " + beside +
                          "  [exists]\nChosen because it is beside the executable, and wins over " + machines + "\n"));
}

TEST_F(LogOfAProgram, HasEveryFaultListedAndIsNotOpened)
{
    Write(R"(<logging>
        <appender name="r" type="rolling-file" path="${LocalAppData}Logs/${logger}-${pid}.log" threshold="error" count="7"/>
        <appender name="unused" type="file" path="${env:FRAXO_PRO_UNSET}/a.log"/>
        <root level="info"><appender-ref ref="r"/></root>
        <logger name="Editor" level="debug"><appender-ref ref="unknown"/></logger>
        </logging>)");
    const std::string file = (NativePath(m_bases.userData) / "Logs" / "Editor-${pid}.log").string();
    EXPECT_THAT(Examine().lines,
                ElementsAre("Level          debug", "Appender       \"r\" to " + file +
                                                        ", 10485760 bytes, and 7 older ones, from level error"));
    EXPECT_THAT(Examine().faults, ElementsAre(HasSubstr("FraxoPro.log.xml:5: <appender-ref>: unknown appender"),
                                              HasSubstr("FraxoPro.log.xml:3: <appender>: \"unused\" is ignored")));
    EXPECT_FALSE(exists(NativePath(m_bases.userData)));
}

TEST_F(LogOfAProgram, ShowsValuesOfTheEnvironmentOnlyWhenAsked)
{
    m_machine.SetEnvironment("FRAXO_PRO_SECRET", "secret");
    Write(R"(<logging><appender name="a" type="file" path="${env:FRAXO_PRO_SECRET}/${logger}.log"/>
        <root><appender-ref ref="a"/></root></logging>)");
    EXPECT_THAT(Examine().lines, ElementsAre(HasSubstr("warning"), HasSubstr("${env:FRAXO_PRO_SECRET}/${logger}.log")));
    EXPECT_THAT(Examine(true).lines, ElementsAre(HasSubstr("warning"), HasSubstr("secret")));
}
} // namespace
