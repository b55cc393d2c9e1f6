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
    const char* name;
    const char* code;
    const char* postfix;
    const char* recordedRoot;
    const char* root;
};

class LanguageResources : public InstallationTest, public ::testing::WithParamInterface<Row>
{
protected:
    LanguageResources()
    {
        m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", GetParam().code);
        Install(GetParam().recordedRoot);
    }

    /// A path below the root, with the postfix of the current language in front of ".dll".
    static Utf8String Library(const std::string& tail) { return GetParam().root + tail + GetParam().postfix + ".dll"; }
    static Utf8String InLanguages(const std::string& tail)
    {
        return GetParam().root + (R"(Resource\Language\)" + tail);
    }
};

// One library for each base.
TEST_P(LanguageResources, AreNamedAfterThePostfix)
{
    EXPECT_EQ(LanguageHelper::GetFraxoProRcAci_05Path(), Library(R"(FRAXO\RCDesigner\ACI_05)"));
    EXPECT_EQ(LanguageHelper::GetAdvancedQryResourcePath(), Library(R"(Resource\Language\QueryGenRes)"));
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageSectionWizardDllPath("Free"), Library(R"(FRAXO\SectionWizard\Free)"));
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageSectionWizardDllPath(""), Library(R"(FRAXO\SectionWizard\)"));
    EXPECT_EQ(LanguageHelper::GetStWizardInternalResourcePath(), Library(R"(FRAXO\StWizard)"));

    // "USEnglish" in any language
    EXPECT_EQ(LanguageHelper::GetFraxoProResourcePath(), Library(R"(Resource\Language\USEnglish)"));
    EXPECT_EQ(LanguageHelper::GetFraxoProResourcePath("mr"), InLanguages("USEnglishMA.dll"));
    EXPECT_EQ(LanguageHelper::GetFraxoProResourcePath("xx"), InLanguages("USEnglishEN.dll"));
}

TEST_P(LanguageResources, LieInFoldersNamedAfterTheCode)
{
    const std::string code = GetParam().code;
    EXPECT_EQ(LanguageHelper::GetLanguageDirectory(), InLanguages(""));
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageDirectory(), InLanguages(code + '\\'));
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageDirectory("de"), InLanguages(R"(de\)"));
    EXPECT_EQ(LanguageHelper::GetCurrentLanguageDirectory(""), InLanguages(R"(\)"));
    EXPECT_EQ(LanguageHelper::GetOfficeLocationsPath(), InLanguages(code + R"(\Offices.xml)"));
    EXPECT_EQ(LanguageHelper::GetCodeDescriptionDir(), Utf8String{R"(Language\)" + code});
}

INSTANTIATE_TEST_SUITE_P(Language, LanguageResources,
                         ::testing::Values(Row{"French", "fr", "FR", R"(C:\Fraxo Pro)", R"(C:\Fraxo Pro\)"},
                                           Row{"Chinese", "zh-cn", "CH", R"(C:\Fraxo Pro\)", R"(C:\Fraxo Pro\)"},
                                           Row{"ItalianInEnglishLibraries", "it", "EN", "C:/Pro/", "C:/Pro/"},
                                           Row{"WithoutARoot", "ja", "JP", "", ""}),
                         [](const auto& row) { return std::string{row.param.name}; });
} // namespace
