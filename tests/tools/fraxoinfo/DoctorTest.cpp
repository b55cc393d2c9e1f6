#include "Doctor.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>

#include "Features.h"
#include "Report.h"
#include "SettledOperations.h"
#include "support/Files.h"
#include "support/InstallationTest.h"

namespace
{
using namespace FraxoInfo;
using namespace std::string_literals;
using std::filesystem::path;
using ::testing::HasSubstr;

constexpr char ProductIni[] = "FraxoPro22.00.00.ini";

/// A small installation that lacks nothing: two languages, and the defaults of all files that users get copies of.
class Installation : public InstallationTest
{
public:
    using InstallationTest::Install; // damage is done from outside
    using InstallationTest::InstallationKey;
    using InstallationTest::m_machine;

    Installation()
    {
        m_machine.WriteData(HKEY_CLASSES_ROOT, R"(FraxoPro\22.00.00\Language)", "InstalledLanguages", REG_MULTI_SZ,
                            "de\0en\0\0"s);
        Choose(HKEY_LOCAL_MACHINE, "DefaultLanguage", "en");
        for (const char* const name :
             {"FRAXO/LiveLoad.veh", "FRAXO/default.stp", "FRAXO/FProQATItemSettings.xml", "FRAXO/Plugins/Plugins.ini",
              "FRAXO/Plugins/ConnectionTagLink/Data/ConnectionTagFile.xml", "Resource/Language/de/Offices.xml",
              "Resource/Language/en/Offices.xml"})
            WriteFile(Root() / name, "default");
        for (const char* const name : {"Sections/Custom.ini", "SteelAutoDrafter/SCGA-DrgEnv.INI",
                                       "Language/en/Codes.ini", "Language/en/IS875Cities.ini", ProductIni})
            WriteFile(MachineData() / name, "; default\n");
    }

    path Root() const { return NativePath(m_bases.root); }
    path MachineData() const { return NativePath(m_bases.machineData); }
    path UserDefaults() const { return NativePath(m_bases.userData) / "Default"; }

    void Choose(HKEY root, const char* name, const char* language) const
    {
        m_machine.WriteText(root, R"(SOFTWARE\Quenlor\FraxoPro\22.00.00\Language)", name, language);
    }

protected:
    const Bases m_bases = Install();
};

using Doctor = Installation;

constexpr char Healthy[] = "Healthy: nothing needs attention.\n";

TEST_F(Doctor, FindsNothingInAHealthyInstallation)
{
    EXPECT_EQ(FormatFindings(Examine()), Healthy);
    WriteFile(MachineData() / "Sections/Custom.ini", ""); // an empty default has an empty copy
    AskForEverything(true);
    Choose(HKEY_CURRENT_USER, "CurrentLanguage", "de");
    EXPECT_EQ(FormatFindings(Examine()), Healthy);

    m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "en"); // overrides a choice, which is not looked at then
    Choose(HKEY_CURRENT_USER, "CurrentLanguage", "fr");
    EXPECT_EQ(FormatFindings(Examine()), Healthy);
}

struct Damage
{
    const char* name;
    void (*inflict)(Installation&);
    const char* problem;
};

class DamagedInstallation : public Installation, public ::testing::WithParamInterface<Damage>
{
};

TEST_P(DamagedInstallation, GivesOneFindingThatNamesTheDamage)
{
    GetParam().inflict(*this);
    const auto findings = Examine();
    ASSERT_EQ(findings.size(), 1U) << FormatFindings(findings);
    EXPECT_THAT(findings[0].problem, HasSubstr(GetParam().problem));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Doctor, DamagedInstallation, ::testing::Values(
    Damage{"Record", [](Installation& it) { it.m_machine.DeleteKey(HKEY_CLASSES_ROOT, it.InstallationKey); }, R"(no installation record: HKEY_CLASSES_ROOT\FraxoPro\22.00.00)"},
    Damage{"Root", [](Installation& it) { remove_all(it.Root()); }, "root does not exist"},
    Damage{"RelativeRoot", [](Installation& it) { it.Install("relative"); }, R"(root is not an absolute path: relative\)"},
    Damage{"DefaultBelowTheRoot", [](Installation& it) { remove(it.Root() / "FRAXO/default.stp"); }, "GetStWizardDefaultStpPath"},
    Damage{"EmptyUsersFile", [](Installation& it) { WriteFile(it.UserDefaults() / "LiveLoad.veh", ""); }, "file is empty"},
    Damage{"FolderInPlaceOfAUsersFile", [](Installation& it) { create_directories(it.UserDefaults() / "LiveLoad.veh"); }, "file cannot be read"},
    Damage{"UsersLanguage", [](Installation& it) { it.Choose(HKEY_CURRENT_USER, "CurrentLanguage", "fr"); }, R"(user's language "fr" is not installed)"},
    Damage{"MachinesLanguage", [](Installation& it) { it.Choose(HKEY_LOCAL_MACHINE, "DefaultLanguage", "EN"); }, R"(machine's default language "EN" is not installed)"},
    Damage{"LanguageFolder", [](Installation& it) { remove_all(it.Root() / "Resource/Language/de"); }, R"(language "de" has no resource folder)"},
    Damage{"FeatureInTheEnvironment", [](Installation& it) { it.m_machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", "yes"); }, "FPRO_FEATURE_REVULYTICS"},
    Damage{"LogConfiguration", [](Installation& it) { WriteFile(it.MachineData() / "FraxoPro.log.xml", "<logging>\n<rot/></logging>"); }, "FraxoPro.log.xml:2: <rot>"},
    Damage{"MachinesShellFolder", [](Installation& it) { it.m_machine.BreakShellFolder(ShellFolder::ProgramData); }, "Could not get ProgramData folder"}),
    [](const auto& row) { return std::string{row.param.name}; });
// clang-format on

TEST_F(Doctor, TellsOfRegistryFilesWithoutUse)
{
    if (!std::getenv("QUENLOR_REGISTRY_DIR"))
        GTEST_SKIP() << "This system keeps its registry itself.";
    const path registry = m_machine.Root() / "Registry";
    std::ofstream{registry / "HKEY_LOCAL_MACHINE.reg", std::ios::app} << "\"Lost\"=no quotes\n";
    const auto findings = Examine();
    ASSERT_EQ(findings.size(), 1U) << FormatFindings(findings);
    EXPECT_THAT(findings[0].problem, HasSubstr("HKEY_LOCAL_MACHINE.reg is skipped"));

    create_directory(registry / "HKEY_CURRENT_USER.reg");
    EXPECT_THAT(Examine().front().problem + Examine()[1].problem, HasSubstr("HKEY_CURRENT_USER.reg cannot be read"));
}

TEST(FormatFindings, CountsTheProblemsBelowThem)
{
    EXPECT_EQ(FormatFindings({{"P.", "R."}}), "! P.\n  R.\n\n1 problem needs attention.\n");
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
        EXPECT_EQ(provided[i].failure, "");
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
    const std::string table = FormatFeatures(ReadFeatures());
    EXPECT_THAT(table, HasSubstr("REVULYTICS                       on   environment\n"));
    EXPECT_THAT(table, HasSubstr("CHINESE_STEEL_DESIGN             on   " + installed));
    EXPECT_THAT(table, HasSubstr("unusable value in the " + installed + ": invalid stoi argument\n"));

    WriteFile(UserDefaults() / ProductIni, "[DEV_FEATURES]\nFPRO_FEATURE_INTEGRATED_CHINESE_STEEL_DESIGN=2\n");
    const auto features = ReadFeatures();
    EXPECT_EQ(features[2].source, "INI file " + m_bases.userData + R"(Default\)" + ProductIni);
    EXPECT_EQ(features[1].source, "off by default"); // the installed default does not count any more
}
} // namespace
