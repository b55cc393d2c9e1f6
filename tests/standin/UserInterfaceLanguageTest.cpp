#include <Platform/Win32.h>
#include <gtest/gtest.h>

#include "LanguageHelper.h"
#include "support/ScratchMachine.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::LanguageHelper;

TEST(GetUserDefaultUILanguage, IsThatOfTheUsersLocaleAndDecidesTheCharset)
{
    ScratchMachine machine;
    for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        machine.SetEnvironment(variable, {});
    machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "ja"); // has no say in this

    constexpr LANGID English = 0x0409;
    EXPECT_EQ(::GetUserDefaultUILanguage(), English);
    struct Step // each changes what the ones before it have set
    {
        const char* variable;
        const char* value;
        LANGID language;
        int charset;
    };
    constexpr Step steps[] = {
        {"LANG", "ja_JP.UTF-8", 0x0411, 128},
        {"LANG", "zh_CN.GB18030", 0x0804, 134},
        {"LANG", "ru", 0x0419, 204},
        {"LANG", "sr_RS@latin", 0x081A, 238},
        {"LANG", "ko_KR.UTF-8", 0x0412, 0},
        {"LANG", "jam_JM", English, 0}, // three letters, not Japanese
        {"LC_MESSAGES", "pl_PL.UTF-8", 0x0415, 238},
        {"LC_ALL", "tr_TR.UTF-8", 0x041F, 162},
        {"LC_ALL", "C.UTF-8", English, 0},
        {"LC_ALL", "", 0x0415, 238}, // as if it were missing
    };
    for (const Step& step : steps)
    {
        machine.SetEnvironment(step.variable, step.value);
        EXPECT_EQ(::GetUserDefaultUILanguage(), step.language) << step.value;
        EXPECT_EQ(LanguageHelper::GetInterfaceCharset(), step.charset) << step.value;
    }
}
} // namespace
