#include "Doctor.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>

#include "Features.h"
#include "SettledOperations.h"
#include "support/Files.h"
#include "support/InstallationTest.h"

namespace
{
using namespace FraxoInfo;
using namespace std::string_literals;
using std::filesystem::path;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

/// A small installation that lacks nothing: two languages, and the defaults of all files that users get copies of.
class Installation : public InstallationTest
{
public:
    using InstallationTest::Install; // damage is done from outside
    using InstallationTest::m_machine;
    using InstallationTest::RunFromOutput;

    Installation()
    {
        m_machine.WriteData(HKEY_CLASSES_ROOT, InstallationKey + R"(\Language)", "InstalledLanguages", REG_MULTI_SZ,
                            "de\0en\0\0"s);
        Choose(HKEY_LOCAL_MACHINE, "DefaultLanguage", "en");
        for (const char* const language : {"de", "en"})
            WriteFile(Root() / "Resource/Language" / language / "Offices.xml", "default");
        for (const Operation& operation : Catalogue())
        {
            if (operation.userFile)
                WriteFile(NativePath(operation.userFile().installedDefault.ToStdString()), "[SECTION]\nkey=value\n");
        }
        WriteFile(MachineData() / "FraxoPro.log.xml", "<logging><appender name='n' type='console'/><root level='info'>"
                                                      "<appender-ref ref='n'/></root></logging>");
    }

    path Root() const { return NativePath(m_bases.root); }
    path MachineData() const { return NativePath(m_bases.machineData); }
    path UserDefaults() const { return NativePath(m_bases.userData) / "Default"; }

    void Choose(HKEY root, const char* name, const char* language) const
    {
        m_machine.WriteText(root, VendorKey + R"(\Language)", name, language);
    }

    const Bases m_bases = Install();
};

using Doctor = Installation;

constexpr char Healthy[] = "Healthy: nothing needs attention.\n";

TEST_F(Doctor, FindsNothingInAHealthyInstallation)
{
    EXPECT_EQ(Format(Examine()), Healthy);
    WriteFile(MachineData() / "Sections/Custom.ini", ""); // an empty default has an empty copy
    AskForEverything(true);
    Choose(HKEY_CURRENT_USER, "CurrentLanguage", "de");
    EXPECT_EQ(Format(Examine()), Healthy);
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
    Damage{"Record", [](Installation& it) { it.m_machine.DeleteKey(HKEY_CLASSES_ROOT, InstallationKey); }, R"(no installation record: HKEY_CLASSES_ROOT\)" + InstallationKey},
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
    Damage{"UnknownFeatureVariable", [](Installation& it) { it.m_machine.SetEnvironment("FPRO_FEATURE_REVULITICS", "1"); }, "FPRO_FEATURE_REVULITICS names no feature", "FPRO_FEATURE_REVULYTICS"},
    Damage{"UnknownFeature", [](Installation& it) { WriteFile(it.MachineData() / ProductIni, "[DEV_FEATURES]\nFPRO_FEATURE_REVULITICS=1\n"); }, "FPRO_FEATURE_REVULITICS\" in section DEV_FEATURES", "FPRO_FEATURE_REVULYTICS"},
    Damage{"ForcedLanguage", [](Installation& it) { it.m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "en"); it.Choose(HKEY_CURRENT_USER, "CurrentLanguage", "fr"); }, "FRAXO_PRO_LANGUAGE=en sets the language, and hides what was chosen (the user's language: fr"},
    Damage{"SectionsVariable", [](Installation& it) { it.m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", it.m_bases.machineData + "Sections\\"); }, "replaces the installed section database"},
    Damage{"RootVariable", [](Installation& it) { it.m_machine.SetEnvironment("FRAXO_PRO_ROOT_DIRECTORY", "/nowhere"); }, "this program is not in it"},
    Damage{"RunningFromOutput", [](Installation& it) { it.RunFromOutput(); }, "Files missing there: 1", "Remove the variable"},
    Damage{"OtherRelease", [](Installation& it) { it.m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor Systems\FraxoPro\1.00.00\Configurations)", "ThemeColor", "Dark"); }, R"(Quenlor Systems\FraxoPro\1.00.00\Configurations, where this release does not look: ThemeColor)"},
    Damage{"OtherSpelling", [](Installation& it) { it.m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor\Fraxo Pro\)" + Release + R"(\Configurations)", "ThemeColor", "Dark"); }, "where this release does not look", R"(HKEY_CURRENT_USER\)" + SettingsKey + R"(\Configurations)"},
    Damage{"OtherType", [](Installation& it) { it.m_machine.WriteNumber(HKEY_CURRENT_USER, SettingsKey + R"(\Configurations)", "ThemeColor", 1); }, "ThemeColor is not used: REG_DWORD, text expected"},
    Damage{"ByteOrderMark", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "\xEF\xBB\xBF[SECTION]\nkey=1\n"); }, "starts with a byte-order mark"},
    Damage{"Utf16", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "\xFF\xFE[\0S\0]\0"s); }, "starts with a byte-order mark"},
    Damage{"Nuls", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "[SECTION]\nkey=\0\n"s); }, "Line 2 of this user's file"},
    Damage{"NoSection", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "; nothing\n"); }, "has no section, although its default has"},
    Damage{"NoBracket", [](Installation& it) { WriteFile(it.UserDefaults() / ProductIni, "[SECTION\nkey=1\n"); }, "no closing bracket: a header of section \"SECTIO\""},
    Damage{"NoLogConfiguration", [](Installation& it) { remove(it.MachineData() / "FraxoPro.log.xml"); }, "There is no log configuration"},
    Damage{"SilentLog", [](Installation& it) { WriteFile(it.MachineData() / "FraxoPro.log.xml", "<logging><appender name='n' type='null'/><root level='info'><appender-ref ref='n'/></root></logging>"); }, "sends no record anywhere"},
    Damage{"LogFolderIsAFile", [](Installation& it) { WriteFile(it.MachineData() / "Logs", ""); WriteFile(it.MachineData() / "FraxoPro.log.xml", "<logging><appender name='f' type='file' path='Logs/a.log'/><root level='info'><appender-ref ref='f'/></root></logging>"); }, "The log file cannot be written"},
    Damage{"LogConfiguration", [](Installation& it) { WriteFile(it.MachineData() / "FraxoPro.log.xml", "<logging>\n<rot/></logging>"); }, "FraxoPro.log.xml:2: <rot>"},
    Damage{"UsersClasses", [](Installation& it) { for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) it.m_machine.WriteText(root, R"(Software\Classes\)" + InstallationKey, "RootDir", it.m_bases.root); }, "hide the machine's installation record"},
    Damage{"MachinesShellFolder", [](Installation& it) { it.m_machine.BreakShellFolder(ShellFolder::ProgramData); }, "Could not get ProgramData folder"}),
    [](const auto& row) { return std::string{row.param.name}; });
// clang-format on

TEST_F(Doctor, FindsFaultsOfRegistryFilesWithoutQuotingTheirData)
{
    if (!std::getenv("QUENLOR_REGISTRY_DIR"))
        GTEST_SKIP() << "This system keeps its registry itself.";
    const path registry = m_machine.Root() / "Registry";
    const auto problems = [&]
    {
        std::string all;
        for (const Finding& finding : Examine())
            all += finding.problem + '|' + finding.remedy + '\n';
        return all;
    };
    const std::string healthy = ReadFile(registry / "HKEY_LOCAL_MACHINE.reg");
    WriteFile(registry / "HKEY_LOCAL_MACHINE.reg", healthy + "\"Mail\"=\"kim@example.com\n");
    EXPECT_THAT(problems(), AllOf(HasSubstr("HKEY_LOCAL_MACHINE.reg is skipped"), HasSubstr("\"Mail\"=..."),
                                  Not(HasSubstr("kim@"))));

    WriteFile(registry / "HKEY_LOCAL_MACHINE.reg", healthy);
    WriteFile(registry / "HKEY_LOCAL_MACHINE.reg.skipped", "\"Mail\"=\"kim@example.com\n");
    EXPECT_THAT(problems(), AllOf(HasSubstr("were skipped when it was last written"), Not(HasSubstr("kim@"))));

    WriteFile(registry / "HKEY_LOCAL_MACHINE.reg", healthy.substr(healthy.find('\n') + 1));
    EXPECT_THAT(problems(),
                AllOf(HasSubstr("is not read at all"), HasSubstr("has to be: Windows Registry Editor Version 5.00"),
                      Not(HasSubstr("RootDir="))));

    remove(registry / "HKEY_CURRENT_USER.reg");
    create_directory(registry / "HKEY_CURRENT_USER.reg");
    EXPECT_THAT(problems(), HasSubstr("HKEY_CURRENT_USER.reg cannot be read"));
}

TEST(Findings, AreCountedBelowThem)
{
    EXPECT_EQ(Format(std::vector<Finding>{{"P.", "R."}}), "! P.\n  R.\n\n1 problem needs attention.\n");
}

TEST_F(Doctor, CreatesNothingUnlessFilesAreToBeProvided)
{
    const auto answers = AskForEverything(false);
    Examine();
    ReadFeatures();
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "LocalAppData"));
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, R"(Software\Quenlor Systems)"));

    const auto provided = AskForEverything(true);
    for (std::size_t i = 0; i < answers.size(); ++i)
    {
        SCOPED_TRACE(answers[i].operation->name);
        EXPECT_EQ(provided[i].failure, "") << "A getter that provides a file needs a row in Catalogue.cpp.";
        EXPECT_TRUE(!IsSettled(*answers[i].operation) || provided[i].value == answers[i].value)
            << Shown(provided[i]) << '\n'
            << Shown(answers[i]);
        EXPECT_TRUE(!answers[i].operation->userFile || provided[i].exists == true);
    }
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
} // namespace
