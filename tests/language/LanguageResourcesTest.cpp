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
    const char* postfix;
    const char* root;
};

class LanguageResources : public InstallationTest, public ::testing::WithParamInterface<Row>
{
protected:
    LanguageResources()
    {
        m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", GetParam().code);
        Install(GetParam().root);
    }

    /// A path below the root, with the postfix of the current language in front of ".dll".
    static Utf8String Library(const std::string& tail) { return GetParam().root + tail + GetParam().postfix + ".dll"; }
};

// One library for each base.
TEST_P(LanguageResources, AreNamedAfterThePostfixInFoldersNamedAfterTheCode)
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

INSTANTIATE_TEST_SUITE_P(Language, LanguageResources,
                         ::testing::Values(Row{"zh-cn", "CH", R"(C:\Fraxo Pro\)"}, Row{"ja", "JP", ""},
                                           Row{R"(..\..\it)", "EN", "C:/Pro/"}), // not checked, see docs/security.md
                         [](const auto& row) { return std::string{row.param.postfix}; });
} // namespace
