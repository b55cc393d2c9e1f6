#include "LanguageHelper.h"

#include <string>

#include <gtest/gtest.h>

#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using Quenlor::Utf8String;
using Quenlor::Fraxo::SharedUtilities::Native::LanguageHelper;

struct Row
{
    const char* code;
    const char* culture;
    int number;
    const char* postfix;
    const char* font = "Arial";
    const char* root = R"(C:\Fraxo Pro\)";
};

class Language : public InstallationTest, public ::testing::WithParamInterface<Row>
{
protected:
    Language()
    {
        m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", GetParam().code);
        Install(GetParam().root);
    }

    /// A path below the root, with the postfix of the current language in front of ".dll".
    static Utf8String Library(const std::string& tail) { return GetParam().root + tail + GetParam().postfix + ".dll"; }
};

TEST_P(Language, DecidesNumbersNamesAndFonts)
{
    EXPECT_EQ(LanguageHelper::GetCultureString(), GetParam().culture);
    EXPECT_EQ(LanguageHelper::GetLangIdString(), '0' + std::to_string(GetParam().number));
    EXPECT_EQ(LanguageHelper::GetLangId(), GetParam().number);
    EXPECT_EQ(LanguageHelper::GetDllLanguagePostfix(), GetParam().postfix);
    EXPECT_EQ(LanguageHelper::GetDllLanguagePostfix(GetParam().code), GetParam().postfix);
    EXPECT_EQ(LanguageHelper::GetTablesFontName(), GetParam().font);
}

// One library for each base.
TEST_P(Language, DecidesLibrariesAndFolders)
{
    EXPECT_EQ(LanguageHelper::GetAdvancedQryResourcePath(), Library(R"(Resource\Language\QueryGenRes)"));
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageSectionWizardDllPath("Free"), Library(R"(FRAXO\SectionWizard\Free)"));
    EXPECT_EQ(LanguageHelper::GetStWizardInternalResourcePath(), Library(R"(FRAXO\StWizard)"));

    // "USEnglish" in any language
    EXPECT_EQ(LanguageHelper::GetFraxoProResourcePath(), Library(R"(Resource\Language\USEnglish)"));
    const std::string languages = GetParam().root + std::string{R"(Resource\Language\)"};
    EXPECT_EQ(LanguageHelper::GetFraxoProResourcePath("mr"), languages + "USEnglishMA.dll");
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageDirectory(), languages + GetParam().code + '\\');
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageDirectory(""), languages + R"(\)");
    EXPECT_EQ(LanguageHelper::GetCodeDescriptionDir(), Utf8String{R"(Language\)"} + GetParam().code);
}

// One regular language speaks for the others. Letter case and length of a code matter.
INSTANTIATE_TEST_SUITE_P(
    , Language,
    ::testing::Values(Row{"tr", "tr-TR", 6, "TR"}, Row{"ja", "ja-JP", 8, "JP", "Meiryo UI", ""},
                      Row{"zh-cn", "zh-CN", 9, "CH"}, Row{"it", "it-IT", 1, "EN"}, Row{"ko", "ko-KR", 1, "EN"},
                      Row{"mr", "mr-IN", 1, "MA"}, Row{"zh-CN", "en-US", 1, "EN"}, Row{"zh", "en-US", 1, "EN"},
                      Row{"JA", "en-US", 1, "EN"}, Row{"ja-jp", "en-US", 1, "EN"},
                      Row{R"(..\..\it)", "en-US", 1, "EN", "Arial", "C:/Pro/"})); // not checked, see docs/security.md
} // namespace
