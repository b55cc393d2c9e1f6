#include "Doctor.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>

#include "Features.h"
#include "Installation.h"
#include "LogSetup.h"

namespace
{
using namespace FraxoInfo;
using namespace std::string_literals;
using ::testing::AllOf;
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
    std::string shown;
};

class DamagedInstallation : public Installation, public ::testing::WithParamInterface<Damage>
{
};

TEST_P(DamagedInstallation, GivesOneFindingThatNamesTheDamage)
{
    GetParam().inflict(*this);
    const auto findings = Examine();
    EXPECT_EQ(findings.size(), 1U);
    EXPECT_THAT(Format(findings), HasSubstr(GetParam().shown));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Doctor, DamagedInstallation, ::testing::Values(
    Damage{"Record", [](Installation&) { ::RegDeleteTreeA(HKEY_CLASSES_ROOT, InstallationKey.c_str()); }, R"("RootDir" of HKEY_CLASSES_ROOT\)" + InstallationKey + " is missing"},
    Damage{"Root", [](Installation& it) { remove_all(it.Root()); }, "root does not exist"},
    Damage{"RelativeRoot", [](Installation& it) { it.Install("relative"); }, R"(root is not an absolute path: relative\)"},
    Damage{"DefaultBelowTheRoot", [](Installation& it) { remove(it.Root() / "FRAXO/default.stp"); }, "GetStWizardDefaultStpPath"},
    Damage{"EmptyUsersFile", [](Installation& it) { WriteFile(it.UserDefaults() / "LiveLoad.veh", ""); }, "file is empty"},
    Damage{"FolderInPlaceOfAUsersFile", [](Installation& it) { create_directories(it.UserDefaults() / "LiveLoad.veh"); }, "file cannot be read"},
    Damage{"UsersLanguage", [](Installation& it) { it.Choose(HKEY_CURRENT_USER, "CurrentLanguage", "fr"); }, R"(user's language "fr" is not installed)"},
    Damage{"LanguageFolder", [](Installation& it) { remove_all(it.Root() / "Resource/Language/de"); }, R"(language "de" has no resource folder)"},
    Damage{"UnusableFeature", [](Installation& it) { it.m_machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", "yes"); }, "FPRO_FEATURE_REVULYTICS has an unusable value in the environment"},
    Damage{"OverriddenFeature", [](Installation& it) { it.m_machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", "1"); }, "FPRO_FEATURE_REVULYTICS=1 overrides the INI file, which says nothing"},
    Damage{"UnknownFeatureVariable", [](Installation& it) { it.m_machine.SetEnvironment("FPRO_FEATURE_REVULITICS", "1"); }, "FPRO_FEATURE_REVULITICS does not belong to a feature.\n  Did you mean FPRO_FEATURE_REVULYTICS?"},
    Damage{"UnknownFeature", [](Installation& it) { WriteFile(it.MachineData() / ProductIni, "[DEV_FEATURES]\nFPRO_FEATURE_REVULITICS=1\n"); }, "FPRO_FEATURE_REVULITICS\" in section DEV_FEATURES"},
    Damage{"ForcedLanguage", [](Installation& it) { it.m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "en"); it.Choose(HKEY_CURRENT_USER, "CurrentLanguage", "fr"); }, "FRAXO_PRO_LANGUAGE=en overrides the chosen language (the user's language: fr, the"},
    Damage{"SectionsVariable", [](Installation& it) { it.m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", it.m_bases.machineData + "Sections\\"); }, "replaces the installed section database"},
    Damage{"RunningFromOutput", [](Installation& it) { it.RunFromOutput(); }, "and both data folders, because this program is in it. Files missing there: 1"},
    Damage{"OtherSpelling", [](Installation& it) { it.m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor\Fraxo Pro\)" + Release + R"(\Configurations)", "ThemeColor", "Dark"); }, "where this release does not look: ThemeColor.\n  If they are meant for this release, store them in HKEY_CURRENT_USER\\" + SettingsKey},
    Damage{"OtherType", [](Installation& it) { it.m_machine.WriteNumber(HKEY_CURRENT_USER, SettingsKey + R"(\Configurations)", "ThemeColor", 1); }, "ThemeColor is not used: REG_DWORD, text expected"},
    Damage{"Nuls", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "[SECTION]\nkey=\0\n"s); }, "Line 2 of this user's file"},
    Damage{"NoSection", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "; nothing\n"); }, "has no sections, unlike its default"},
    Damage{"NoLogConfiguration", [](Installation& it) { remove(it.MachineData() / "FraxoPro.log.xml"); }, "The log configuration is missing"},
    Damage{"SilentLog", [](Installation& it) { it.WriteLogSetup("type='null'"); }, "sends no record anywhere"},
    Damage{"LogFolderIsAFile", [](Installation& it) { WriteFile(it.MachineData() / "Logs", ""); it.WriteLogSetup("type='file' path='Logs/a.log'"); }, "The log file cannot be written"},
    Damage{"LogConfiguration", [](Installation& it) { WriteFile(it.MachineData() / "FraxoPro.log.xml", "<logging>\n<rot/></logging>"); }, "FraxoPro.log.xml:2: <rot>"},
    Damage{"UsersClasses", [](Installation& it) { for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) it.m_machine.WriteText(root, R"(Software\Classes\)" + InstallationKey, "RootDir", it.m_bases.root); }, "hides the machine's installation record"},
    Damage{"MachinesShellFolder", [](Installation& it) { it.m_machine.BreakShellFolder(ShellFolder::ProgramData); }, "Could not get ProgramData folder"}),
    [](const auto& row) { return std::string{row.param.name}; });
// clang-format on

TEST_F(Doctor, CreatesNothingUnlessFilesAreToBeProvided)
{
    AskForEverything(false);
    Examine();
    ReadFeatures();
    EXPECT_TRUE(is_empty(m_machine.Root() / "LocalAppData"));
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, R"(Software\Quenlor Systems)"));

    for (const Answer& answer : AskForEverything(true))
        EXPECT_TRUE(answer.failure.empty() && (!answer.operation->userFile || answer.exists == true))
            << answer.operation->name << Shown(answer);
    EXPECT_EQ(SettledAnswers(false), SettledAnswers(true));
}

TEST_F(Doctor, SaysWhatDecidedAFeature)
{
    WriteFile(MachineData() / ProductIni, "[DEV_FEATURES]\nFPRO_FEATURE_CHINESE_STEEL_DESIGN=-1\n"
                                          "FPRO_FEATURE_CHINESE_WIND_LOAD_GB50009_2012=on\n");
    m_machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", "5");
    const std::string ini = "INI file " + m_bases.machineData + ProductIni;
    EXPECT_THAT(Format(ReadFeatures()), AllOf(HasSubstr("REVULYTICS                       on   environment\n"),
                                              HasSubstr("CHINESE_STEEL_DESIGN             on   " + ini),
                                              HasSubstr("unusable value in the " + ini + ": invalid stoi argument\n")));
    WriteFile(UserDefaults() / ProductIni, "");
    EXPECT_EQ(ReadFeatures()[1].source, "off by default") << "the installed default is not read any more";
}

TEST_F(Doctor, ShowsHowAProgramsLogIsSetUp)
{
    m_machine.SetEnvironment("FRAXO_PRO_SECRET", "secret");
    const std::string programs = m_machine.Folder("Programs"), beside = programs + "FraxoPro.log.xml";
    const std::string machines = m_bases.machineData + "FraxoPro.log.xml";
    const auto show = [&](bool expand)
    { return Format(ExamineLog(Quenlor::QnFileName{programs + "Editor.exe"}, expand)); };
    WriteFile(NativePath(machines), R"(<logging>
        <appender name="r" type="rolling-file" path="${LocalAppData}Logs/${logger}-${pid}.log" threshold="error" count="7"/>
        <appender name="s" type="file" path="${env:FRAXO_PRO_SECRET}/a.log"/>
        <root level="info"><appender-ref ref="r"/></root>
        <logger name="Editor" level="debug"><appender-ref ref="s"/><appender-ref ref="unknown"/></logger>
        </logging>)");
    const auto native = [](const std::string& path) { return NativePath(path).make_preferred().string(); };
    EXPECT_EQ(show(false), "Logger         Editor\nConfiguration  " + machines +
                               "  [exists]\nChosen because this is missing beside the executable: " + beside +
                               "\nLevel          debug\nAppender       \"r\" to " +
                               native(m_bases.userData + R"(Logs\Editor-${pid}.log)") +
                               ", 10485760 bytes, and 7 older ones, from level error\n"
                               "Appender       \"s\" to ${env:FRAXO_PRO_SECRET}/a.log\n! " +
                               native(machines) + ":5: <appender-ref>: unknown appender \"unknown\"\n");
    EXPECT_THAT(show(true), HasSubstr("secret"));
    EXPECT_FALSE(exists(NativePath(m_bases.userData))) << "no log is opened";
}
} // namespace
