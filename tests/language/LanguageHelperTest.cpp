#include "LanguageHelper.h"

#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>

#include "language/LanguageChoice.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
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
};

TEST_F(LanguageTest, IsTheFirstValidChoice)
{
    const struct
    {
        std::string_view record; // the installed set as it is stored
        const char* user;
        const char* machine;
        const char* environment;
        const char* current;
        std::vector<const char*> installed;
        DWORD type = REG_MULTI_SZ;
    } rows[] = {
        {"de\0\0"sv, "de", "de", "xx", "xx", {"xx"}}, // unchecked
        {"ja\0de\0en\0\0"sv, "de", "ja", "", "de", {"de", "en", "ja"}},
        {"de\0ja\0\0"sv, "fr", "ja", "", "ja", {"de", "ja"}},
        {"de\0zh-cn\0\0"sv, "zh", "DE", "", "en", {"de", "zh-cn"}}, // letter case and length matter
        {"de\0\0"sv, "de", "", "", "en", {"en"}, REG_SZ},
        {"\0"sv, "de", "", "", "en", {"en"}},
        {"de\0ja"sv, "ja", "", "", "ja", {"de", "ja"}}, // without its last NULs
        {"de\0\0ja\0\0"sv, "ja", "", "", "en", {"de"}},
    };
    for (const auto& [record, user, machine, environment, current, installed, type] : rows)
    {
        SCOPED_TRACE(record);
        InstallLanguages(record, type);
        // The choices have another key than the installed set.
        m_machine.WriteText(HKEY_CURRENT_USER, VendorKey + R"(\Language)", "CurrentLanguage", user);
        m_machine.WriteText(HKEY_LOCAL_MACHINE, VendorKey + R"(\Language)", "DefaultLanguage", machine);
        m_machine.SetEnvironment(Override, environment);
        ForgetLanguages();
        EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), current);
        EXPECT_THAT(LanguageHelper::GetInstalledLanguages(), ElementsAreArray(installed));
    }
}

TEST_F(LanguageTest, OfAProcessNeverChanges)
{
    InstallLanguages("de\0fr\0\0"sv);
    LanguageHelper::SetLanguage("de");
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), "de");
    m_machine.SetEnvironment(Override, "ja");
    InstallLanguages("fr\0\0"sv);
    LanguageHelper::SetLanguage("fr"); // for the next process
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), "de");
    EXPECT_THAT(LanguageHelper::GetInstalledLanguages(), ElementsAre("de", "fr")) << "found with the language";

    m_machine.SetEnvironment(Override, {});
    ForgetLanguages();
    EXPECT_EQ(LanguageHelper::GetCurrentLanguage(), "fr");
}

TEST_F(LanguageTest, DecidesNamesAndLibraries)
{
    // One regular language, the irregular ones, and what no row has: letter case and length of a code matter.
    const std::tuple<const char*, const char*, int, const char*> rows[] = {
        {"tr", "tr-TR", 6, "TR"},    {"ja", "ja-JP", 8, "JP"},         {"zh-cn", "zh-CN", 9, "CH"},
        {"it", "it-IT", 1, "EN"},    {"ko", "ko-KR", 1, "EN"},         {"mr", "mr-IN", 1, "MA"},
        {"zh-CN", "en-US", 1, "EN"}, {R"(..\..\ja)", "en-US", 1, "EN"}}; // not checked, see docs/security.md
    Install("C:/Pro/");
    for (const auto& [code, culture, number, postfix] : rows)
    {
        SCOPED_TRACE(code);
        m_machine.SetEnvironment(Override, code);
        ForgetLanguages();
        EXPECT_EQ(LanguageHelper::GetCultureString(), culture);
        EXPECT_EQ(LanguageHelper::GetLangIdString(), '0' + std::to_string(number));
        EXPECT_EQ(LanguageHelper::GetLangId(), number);

        // One library for each base. "USEnglish" is the name in any language.
        const std::string ending = std::string{postfix} + ".dll";
        const std::string languages = R"(C:/Pro/Resource\Language\)";
        EXPECT_EQ(LanguageHelper::GetFraxoProRcEc2Path(), R"(C:/Pro/FRAXO\RCDesigner\EC2)" + ending);
        EXPECT_EQ(LanguageHelper::GetCurrentLanguageSectionWizardDllPath("X"),
                  R"(C:/Pro/FRAXO\SectionWizard\X)" + ending);
        EXPECT_EQ(LanguageHelper::GetFraxoProResourcePath(), languages + "USEnglish" + ending);
        EXPECT_EQ(LanguageHelper::GetFraxoProResourcePath("mr"), languages + "USEnglishMA.dll");
        EXPECT_EQ(LanguageHelper::GetCurrentLanguageDirectory(), languages + code + '\\');
        EXPECT_EQ(LanguageHelper::GetCodeDescriptionDir(), std::string{R"(Language\)"} + code);
    }
}
} // namespace
