#include "LanguageHelper.h"

#include <string>

#include <gtest/gtest.h>

#include "support/Printers.h"
#include "support/ScratchMachine.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::LanguageHelper;

struct Row
{
    const char* name;
    const char* code;
    const char* culture;
    const char* id;
    int number;
    const char* postfix;
    const char* font = "Arial";
};

class LanguageMapping : public ::testing::TestWithParam<Row>
{
protected:
    LanguageMapping() { m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", GetParam().code); }

    ScratchMachine m_machine;
};

TEST_P(LanguageMapping, GoesByTheCurrentLanguage)
{
    EXPECT_EQ(LanguageHelper::GetCultureString(), GetParam().culture);
    EXPECT_EQ(LanguageHelper::GetLangIdString(), GetParam().id);
    EXPECT_EQ(LanguageHelper::GetLangId(), GetParam().number);
    EXPECT_EQ(LanguageHelper::GetDllLanguagePostfix(), GetParam().postfix);
    EXPECT_EQ(LanguageHelper::GetDllLanguagePostfix(GetParam().code), GetParam().postfix);
    EXPECT_EQ(LanguageHelper::GetTablesFontName(), GetParam().font);
}

// One regular language speaks for the others.
// clang-format off
INSTANTIATE_TEST_SUITE_P(Language, LanguageMapping, ::testing::Values(
    Row{"Regular", "tr", "tr-TR", "06", 6, "TR"},
    Row{"JapaneseWithItsCountrysPostfixAndAFontOfItsOwn", "ja", "ja-JP", "08", 8, "JP", "Meiryo UI"},
    Row{"ChineseWithARegion", "zh-cn", "zh-CN", "09", 9, "CH"},
    Row{"ItalianWithEnglishLibraries", "it", "it-IT", "01", 1, "EN"},
    Row{"KoreanWithEnglishLibraries", "ko", "ko-KR", "01", 1, "EN"},
    Row{"MarathiWithLibrariesButNoId", "mr", "mr-IN", "01", 1, "MA"},
    Row{"UnknownRegionInCapitals", "zh-CN", "en-US", "01", 1, "EN"},
    Row{"UnknownWithoutARegion", "zh", "en-US", "01", 1, "EN"},
    Row{"UnknownInCapitals", "JA", "en-US", "01", 1, "EN"},
    Row{"UnknownWithARegion", "ja-jp", "en-US", "01", 1, "EN"}),
    [](const auto& row) { return std::string{row.param.name}; });
// clang-format on
} // namespace
