#include "LanguageHelper.h"

#include <future>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include "support/InstallationTest.h"
#include "support/Printers.h"

// A process finds its language once, so every situation is a case of its own.

namespace
{
using Quenlor::Utf8String;
using Quenlor::Fraxo::SharedUtilities::Native::LanguageHelper;
using namespace std::string_view_literals;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr char Override[] = "FRAXO_PRO_LANGUAGE";

class LanguageTest : public InstallationTest
{
protected:
    void InstallLanguages(std::string_view bytes, DWORD type = REG_MULTI_SZ) const
    {
        m_machine.WriteData(HKEY_CLASSES_ROOT, InstallationKey + R"(\Language)", "InstalledLanguages", type, bytes);
    }

    // The choices have another key than the installed set.
    const std::string ChoiceKey = VendorKey + R"(\Language)";
    void Choose(const char* code) const { m_machine.WriteText(HKEY_CURRENT_USER, ChoiceKey, "CurrentLanguage", code); }
};

struct Situation
{
    const char* name;
    std::string_view record; // the installed set as it is stored
    const char* user;        // null where there is nothing
    std::vector<const char*> installed;
    const char* current;
    const char* machine = nullptr;
    std::optional<std::string> environment = {};
    DWORD type = REG_MULTI_SZ;
};

class GetCurrentLanguage : public LanguageTest, public ::testing::WithParamInterface<Situation>
{
};

TEST_P(GetCurrentLanguage, IsTheFirstValidChoice)
{
    const Situation& situation = GetParam();
    m_machine.SetEnvironment(Override, situation.environment);
    if (situation.record.data())
        InstallLanguages(situation.record, situation.type);
    if (situation.user)
        Choose(situation.user);
    if (situation.machine)
        m_machine.WriteText(HKEY_LOCAL_MACHINE, ChoiceKey, "DefaultLanguage", situation.machine);
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), situation.current);
    EXPECT_THAT(LanguageHelper::GetInstalledLanguages(), ElementsAreArray(situation.installed));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Language, GetCurrentLanguage, ::testing::Values(
    Situation{"TheEnvironmentsUnchecked", "de\0\0"sv, "de", {"xx"}, "xx", "de", "xx"},
    Situation{"NotAnEmptyEnvironments", "de\0\0"sv, "de", {"de"}, "de", nullptr, ""},
    Situation{"TheUsers", "ja\0de\0en\0\0"sv, "de", {"de", "en", "ja"}, "de", "ja"},
    Situation{"TheMachinesForOneNotInstalled", "de\0ja\0\0"sv, "fr", {"de", "ja"}, "ja", "ja"},
    Situation{"ExactInLetterCaseAndLength", "de\0zh-cn\0\0"sv, "zh", {"de", "zh-cn"}, "en", "DE"},
    Situation{"EnglishWithoutARecord", {}, "de", {"en"}, "en", "ja"},
    Situation{"EnglishForARecordOfAnotherType", "de\0\0"sv, "de", {"en"}, "en", nullptr, {}, REG_SZ},
    Situation{"EnglishForAnEmptyRecord", "\0"sv, "de", {"en"}, "en"},
    Situation{"OneOfARecordWithoutItsLastNuls", "de\0ja"sv, "ja", {"de", "ja"}, "ja"},
    Situation{"NoneAfterTheEndOfARecord", "de\0\0ja\0\0"sv, "ja", {"de"}, "en"}),
    [](const auto& row) { return std::string{row.param.name}; });
// clang-format on

TEST_F(LanguageTest, OfAProcessNeverChanges)
{
    InstallLanguages("de\0fr\0\0"sv);
    Choose("de");
    std::vector<std::future<Utf8String>> answers;
    for (int thread = 0; thread < 4; ++thread) // the first may be any
        answers.push_back(std::async(std::launch::async, LanguageHelper::GetCurrentLanguage));
    for (auto& answer : answers)
        EXPECT_EQ(answer.get(), "de");

    m_machine.SetEnvironment(Override, "ja");
    InstallLanguages("fr\0\0"sv);
    Choose("fr");
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), "de");
    EXPECT_THAT(LanguageHelper::GetInstalledLanguages(), ElementsAre("de", "fr")) << "found with the language";
}

TEST_F(LanguageTest, FromTheEnvironmentLeavesTheInstalledSetOpen)
{
    InstallLanguages("de\0\0"sv);
    m_machine.SetEnvironment(Override, "ja");
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), "ja");
    m_machine.SetEnvironment(Override, {});
    EXPECT_THAT(LanguageHelper::GetInstalledLanguages(), ElementsAre("de"));
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), "ja");
}

TEST_F(LanguageTest, SetLanguageIsForTheNextProcess)
{
    InstallLanguages("de\0fr\0\0"sv);
    const auto stored = [&] { return m_machine.ReadData(HKEY_CURRENT_USER, ChoiceKey, "CurrentLanguage"); };

    LanguageHelper::SetLanguage("de");
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), "de"); // this process had none yet
    LanguageHelper::SetLanguage("not a language");
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), "de");
    m_machine.WhileReadOnly(HKEY_CURRENT_USER, ChoiceKey, [] { LanguageHelper::SetLanguage("ja"); });
    EXPECT_EQ(stored(), (StoredValue{REG_SZ, {"not a language", 15}})) << "the failure is not reported";
}
struct Row
{
    const char* code;
    const char* culture;
    int number;
    const char* postfix;
    const char* font = "Arial";
};

class Language : public InstallationTest, public ::testing::WithParamInterface<Row>
{
};

TEST_P(Language, DecidesNamesAndLibraries)
{
    const auto& [code, culture, number, postfix, font] = GetParam();
    m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", code);
    Install("C:/Pro/");
    EXPECT_EQ(LanguageHelper::GetCultureString(), culture);
    EXPECT_EQ(LanguageHelper::GetLangIdString(), '0' + std::to_string(number));
    EXPECT_EQ(LanguageHelper::GetLangId(), number);
    EXPECT_EQ(LanguageHelper::GetDllLanguagePostfix(code), postfix);
    EXPECT_EQ(LanguageHelper::GetTablesFontName(), font);

    // One library for each base. "USEnglish" is the name in any language.
    const std::string ending = std::string{postfix} + ".dll";
    const std::string languages = R"(C:/Pro/Resource\Language\)";
    EXPECT_EQ(LanguageHelper::GetFraxoProRcEc2Path(), R"(C:/Pro/FRAXO\RCDesigner\EC2)" + ending);
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageSectionWizardDllPath("X"), R"(C:/Pro/FRAXO\SectionWizard\X)" + ending);
    EXPECT_EQ(LanguageHelper::GetStWizardInternalResourcePath(), R"(C:/Pro/FRAXO\StWizard)" + ending);
    EXPECT_EQ(LanguageHelper::GetFraxoProResourcePath(), languages + "USEnglish" + ending);
    EXPECT_EQ(LanguageHelper::GetFraxoProResourcePath("mr"), languages + "USEnglishMA.dll");
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageDirectory(), languages + code + '\\');
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageDirectory(""), languages + '\\');
    EXPECT_EQ(LanguageHelper::GetCodeDescriptionDir(), std::string{R"(Language\)"} + code);
}

// One regular language, the irregular ones, and what no row has: letter case and length of a code matter.
INSTANTIATE_TEST_SUITE_P(, Language,
                         ::testing::Values(Row{"tr", "tr-TR", 6, "TR"}, Row{"ja", "ja-JP", 8, "JP", "Meiryo UI"},
                                           Row{"zh-cn", "zh-CN", 9, "CH"}, Row{"it", "it-IT", 1, "EN"},
                                           Row{"ko", "ko-KR", 1, "EN"}, Row{"mr", "mr-IN", 1, "MA"},
                                           Row{"zh-CN", "en-US", 1, "EN"}, Row{"zh", "en-US", 1, "EN"},
                                           Row{R"(..\..\ja)", "en-US", 1, "EN"})); // not checked, see docs/security.md
} // namespace
