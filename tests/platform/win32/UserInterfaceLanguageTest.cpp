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

    const auto expect = [&](const char* variable, const char* value, LANGID language, int charset)
    {
        machine.SetEnvironment(variable, value); // beside what is set already
        EXPECT_EQ(::GetUserDefaultUILanguage(), language) << value;
        EXPECT_EQ(LanguageHelper::GetInterfaceCharset(), charset) << value;
    };
    expect("LANG", "", 0x0409, 0);
    expect("LANG", "jam_JM", 0x0409, 0); // three letters, not Japanese
    expect("LANG", "ja_JP.UTF-8", 0x0411, 128);
    expect("LANG", "zh_CN.GB18030", 0x0804, 134);
    expect("LANG", "ru", 0x0419, 204);
    expect("LC_MESSAGES", "sr_RS@latin", 0x081A, 238);
    expect("LC_ALL", "tr_TR.UTF-8", 0x041F, 162);
    expect("LC_ALL", "C.UTF-8", 0x0409, 0);
    expect("LC_ALL", "", 0x081A, 238); // as if it were missing
}
} // namespace
