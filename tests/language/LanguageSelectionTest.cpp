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

    // The choices lie below another key than the installed set.
    const std::string ChoiceKey = VendorKey + R"(\Language)";
    void Choose(const char* code) const { m_machine.WriteText(HKEY_CURRENT_USER, ChoiceKey, "CurrentLanguage", code); }
};

struct Situation
{
    const char* name;
    std::optional<std::string> environment = {};
    std::string_view record = {}; // the installed set as it is stored
    DWORD type = REG_MULTI_SZ;
    const char* user = nullptr; // null where there is nothing
    const char* machine = nullptr;
    std::vector<const char*> installed;
    const char* current;
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
const Situation Situations[] = {
    {.name = "TheEnvironmentsUnchecked", .environment = "xx", .record = "de\0\0"sv, .user = "de", .machine = "de", .installed = {"xx"}, .current = "xx"},
    {.name = "NotAnEmptyEnvironments", .environment = "", .record = "de\0\0"sv, .user = "de", .installed = {"de"}, .current = "de"},
    {.name = "TheUsers", .record = "ja\0de\0en\0\0"sv, .user = "de", .machine = "ja", .installed = {"de", "en", "ja"}, .current = "de"},
    {.name = "TheMachinesForOneNotInstalled", .record = "de\0ja\0\0"sv, .user = "fr", .machine = "ja", .installed = {"de", "ja"}, .current = "ja"},
    {.name = "ExactInLetterCaseAndLength", .record = "de\0zh-cn\0\0"sv, .user = "zh", .machine = "DE", .installed = {"de", "zh-cn"}, .current = "en"},

    {.name = "EnglishWithoutARecord", .user = "de", .machine = "ja", .installed = {"en"}, .current = "en"},
    {.name = "EnglishForARecordOfAnotherType", .record = "de\0\0"sv, .type = REG_SZ, .user = "de", .installed = {"en"}, .current = "en"},
    {.name = "EnglishForAnEmptyRecord", .record = "\0"sv, .user = "de", .installed = {"en"}, .current = "en"},
    {.name = "OneOfARecordWithRepetitions", .record = "ja\0de\0ja\0\0"sv, .user = "ja", .installed = {"de", "ja"}, .current = "ja"},
    {.name = "OneOfARecordWithoutItsLastNuls", .record = "de\0ja"sv, .user = "ja", .installed = {"de", "ja"}, .current = "ja"},
    {.name = "NoneBehindTheEndOfARecord", .record = "de\0\0ja\0\0"sv, .user = "ja", .installed = {"de"}, .current = "en"},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Language, GetCurrentLanguage, ::testing::ValuesIn(Situations),
                         [](const auto& row) { return std::string{row.param.name}; });

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

TEST_F(LanguageTest, SetLanguageTakesEffectInTheNextProcess)
{
    InstallLanguages("de\0fr\0\0"sv);
    const auto stored = [&] { return m_machine.ReadData(HKEY_CURRENT_USER, ChoiceKey, "CurrentLanguage"); };

    LanguageHelper::SetLanguage("de");
    EXPECT_EQ(stored(), (StoredValue{REG_SZ, {"de", 3}}));
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), "de"); // this process had none yet
    LanguageHelper::SetLanguage("not a language");
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), "de");
    m_machine.WhileReadOnly(HKEY_CURRENT_USER, ChoiceKey, [] { LanguageHelper::SetLanguage("ja"); });
    EXPECT_EQ(stored()->bytes, std::string("not a language", 15)); // and nobody is told
}
} // namespace
