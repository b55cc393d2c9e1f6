#include "DirectoryConfig.h"

#include <string>

#include <Platform/Win32.h>
#include <Quenlor/QnStringUtilities.h>
#include <gtest/gtest.h>

#include "core/Paths.h"
#include "support/Files.h"
#include "support/Printers.h"
#include "support/ScratchMachine.h"

// On a machine whose ANSI code page is 1252.

namespace
{
using Quenlor::Utf8String;
using Quenlor::Fraxo::SharedUtilities::Native::DirectoryConfig;
using Quenlor::Fraxo::SharedUtilities::Native::PathOf;

constexpr char Kanji[] = "\xE6\x97\xA5\xE6\x9C\xAC";

void ExpectChecks(const char* name, bool hasUnicodeChars, bool isSupported)
{
    EXPECT_EQ(DirectoryConfig::HasUnicodeChars(name) != 0, hasUnicodeChars) << name;
    EXPECT_EQ(DirectoryConfig::IsFileNameSupportedInCurrentCulture(name), isSupported) << name;
}

TEST(FileNameChecks, AskTwoQuestions)
{
    const ScratchMachine machine;
    ExpectChecks("", false, true);
    ExpectChecks("Portal Frame.frx", false, true);
    ExpectChecks("\xC3\xA9", false, false); // in 1252, but longer in UTF-8
    ExpectChecks("\xC4\x80", true, false);  // has a look-alike in 1252
}

class GetNormalizedFileName : public ::testing::Test
{
protected:
    std::string Make(const std::string& folder, const std::string& file) const
    {
        WriteFile(NativePath(folder + file), "");
        return folder + file;
    }

    static Utf8String Normalise(const std::string& path)
    {
        return DirectoryConfig::GetNormalizedFileName(PathOf(path));
    }

    /// As the system says; on a volume without short names the path itself.
    static std::string ShortForm(const std::string& path)
    {
        wchar_t shortForm[MAX_PATH] = {};
        EXPECT_NE(::GetShortPathNameW(PathOf(path).GetName(), shortForm, MAX_PATH), 0U);
        Utf8String utf8;
        Quenlor::QnStringUtilities::WCharToUtf8(utf8, shortForm);
        return utf8.ToStdString();
    }

    ScratchMachine m_machine;
    const std::string m_models = m_machine.Folder("some models");
    const std::string m_kanji = m_machine.Folder(Kanji);
};

TEST_F(GetNormalizedFileName, ShortensOnlyWhatIsUnsupported)
{
    const std::string plain = Make(m_models, "a portal frame.frx");
    const std::string namedInKanji = Make(m_models, std::string{Kanji} + ".frx");
    const std::string belowKanji = Make(m_kanji, "a portal frame.frx");
    EXPECT_EQ(Normalise(plain), plain);
    EXPECT_EQ(Normalise(namedInKanji), ShortForm(namedInKanji));
    EXPECT_EQ(Normalise(belowKanji), ShortForm(m_kanji) + "a portal frame.frx");
    EXPECT_EQ(Normalise(m_kanji), ShortForm(m_kanji));
}

TEST_F(GetNormalizedFileName, IsEmptyForMissingAndLongPaths)
{
    EXPECT_EQ(Normalise(m_kanji + Kanji), "");
    const std::string folder = m_machine.Folder(std::string(100, 'x'));
    const std::string longest(MAX_PATH - 1 - folder.length(), 'y');
    EXPECT_EQ(Normalise(Make(folder, longest)), folder + longest);
    EXPECT_EQ(Normalise(Make(folder, longest + 'y')), "");
}
} // namespace
