#include <IniReader.h>

#include <cerrno>
#include <climits>
#include <map>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ini/TemporaryFolder.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

using Keys = std::map<std::string, std::string>;
using Sections = std::map<std::string, Keys>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

std::string Utf8(const std::filesystem::path& path)
{
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

std::vector<std::string> SectionList(const IniReader& reader)
{
    std::vector<std::string> names{"left over"};
    const int count = reader.GetSectionList(names);
    EXPECT_EQ(count, static_cast<int>(names.size()));
    return names;
}

Pairs PairList(const IniReader& reader, const std::string& section)
{
    std::vector<IniKeyValue> list{{"left", "over"}};
    const int count = reader.GetKeyValuePairListBySection(section, list);
    EXPECT_EQ(count, static_cast<int>(list.size()));
    Pairs pairs;
    for (const auto& [key, value] : list)
        pairs.emplace_back(key, value);
    return pairs;
}

/// What a reader that has loaded one file holds.
Sections AllOf(const IniReader& reader)
{
    Sections all;
    for (const std::string& section : SectionList(reader))
    {
        const Pairs pairs = PairList(reader, section);
        all[section] = Keys(pairs.begin(), pairs.end());
    }
    return all;
}

class IniFile : public ::testing::Test
{
protected:
    /// A reader that has loaded the text as a file.
    IniReader& With(const std::string& text)
    {
        EXPECT_TRUE(m_reader.LoadFile(m_folder.Write(text).wstring()));
        return m_reader;
    }

    IniReader& WithSection(const std::string& text, const std::string& section)
    {
        EXPECT_TRUE(m_reader.LoadSection(m_folder.Write(text).wstring(), section));
        return m_reader;
    }

    std::wstring MissingFile() const { return (m_folder.Path() / "missing.ini").wstring(); }

    TemporaryFolder m_folder;
    IniReader m_reader;
};

struct Lines
{
    const char* name;
    std::string text;
    Sections sections;
};

void PrintTo(const Lines& row, std::ostream* out)
{
    *out << ::testing::PrintToString(row.text);
}

class LineRule : public IniFile, public ::testing::WithParamInterface<Lines>
{
};

TEST_P(LineRule, DecidesWhatIsStored)
{
    EXPECT_EQ(AllOf(With(GetParam().text)), GetParam().sections);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(LoadFile, LineRule, ::testing::Values(
    Lines{"EmptyFile", "", {}},
    Lines{"CarriageReturns", "[Main]\r\nkey=value\r\n", {{"Main", {{"key", "value"}}}}},
    Lines{"CarriageReturnInsideALine", "a=1\rb=2\n", {{"", {{"a", "1\rb=2"}}}}},
    Lines{"NoLineFeedAtTheEnd", "a=1\nb=2", {{"", {{"a", "1"}, {"b", "2"}}}}},
    Lines{"AllSixWhiteSpaces", "\v\f\t key \r=\f a b\v\r\t\n", {{"", {{"key", "a b"}}}}},
    Lines{"OtherBlanksAreText", "\xC2\xA0k=\x01\n", {{"", {{"\xC2\xA0k", "\x01"}}}}},
    Lines{"NulsAreText", "a\0b=\0c\n"s, {{"", {{"a\0b"s, "\0c"s}}}}},
    Lines{"FirstEqualsSignSeparates", "key = a=b\n=x\nempty=\nnone\n",
        {{"", {{"key", "a=b"}, {"", "x"}, {"empty", ""}}}}},
    Lines{"CommentsOnlyAtTheStartOfALine", "  ;x=1\n#y=2\n;[A]\n#]\nz=1 ;note\n", {{"", {{"z", "1 ;note"}}}}},
    Lines{"OneBracketMakesAHeader", "[Main]\na=1\nMain]\nb=2\n[Main\nc=3\n",
        {{"Main", {{"a", "1"}}}, {"ain", {{"b", "2"}}}, {"Mai", {{"c", "3"}}}}},
    Lines{"ValueInBracketsMakesAHeader", "a=[1]\nb=2\n", {{"=[1", {{"b", "2"}}}}},
    Lines{"BracketsInsideALineAreText", "a[0]=1\nb=[1] \n c=x]y\n", {{"", {{"a[0]", "1"}}}, {"=[1", {{"c", "x]y"}}}}},
    Lines{"BlanksAroundAName", " [ Main ] \nk=v\n", {{"Main", {{"k", "v"}}}}},
    Lines{"NoNameMakesNoHeader", "a=1\n[]\n[ ]\n[\n]\n[=\n=]\n= ]\nb=2\n",
        {{"", {{"a", "1"}, {"[", ""}, {"", "]"}, {"b", "2"}}}}},
    Lines{"ByteOrderMarkIsPartOfTheName", "\xEF\xBB\xBF[Main]\nk=v\n", {{"\xBB\xBF[Main", {{"k", "v"}}}}},
    Lines{"SectionsAreUnitedAndTheLastValueCounts", "[A]\nk=1\n[B]\nk=9\n[A]\nj=3\nk=2\n",
        {{"A", {{"j", "3"}, {"k", "2"}}}, {"B", {{"k", "9"}}}}},
    Lines{"SectionsWithoutKeysDoNotExist", "[A]\n; k=1\n[B]\n\nnoise\n[C]\n[D]\nk=\n", {{"D", {{"k", ""}}}}},
    Lines{"LetterCaseDiffers", "[Main]\nk=1\nK=2\n[main]\nk=3\n",
        {{"Main", {{"K", "2"}, {"k", "1"}}}, {"main", {{"k", "3"}}}}}),
    [](const auto& row) { return std::string{row.param.name}; });
// clang-format on

using LoadFile = IniFile;

TEST_F(LoadFile, OfAMissingFileIsFalseAndLeavesNoValues)
{
    With("[A]\nk=1\n");
    EXPECT_FALSE(m_reader.LoadFile(MissingFile()));
    EXPECT_THAT(SectionList(m_reader), IsEmpty());
    EXPECT_FALSE(m_reader.LoadFile(""));
}

TEST_F(LoadFile, OfSomethingThatCannotBeOpenedIsTrueAndLeavesNoValues)
{
    With("[A]\nk=1\n");
    EXPECT_TRUE(m_reader.LoadFile(m_folder.Path().wstring()));
    EXPECT_THAT(SectionList(m_reader), IsEmpty());
}

TEST_F(LoadFile, TakesNarrowPathsAsUtf8)
{
    const std::filesystem::path file = m_folder.Write("[A]\nk=1\n", u8"Tr\u00E4ger \u6881.ini");
    EXPECT_TRUE(m_reader.LoadFile(Utf8(file)));
    EXPECT_EQ(m_reader.GetIntegerValue("A", "k", 0), 1);
    EXPECT_TRUE(m_reader.LoadSection(Utf8(file), "none"));
    EXPECT_THAT(SectionList(m_reader), IsEmpty());
}

TEST_F(IniFile, IsNotPartOfACopy)
{
    With("[A]\nk=1\n");
    IniReader copy{m_reader};
    EXPECT_THAT(SectionList(copy), IsEmpty());
    EXPECT_EQ(copy.GetStringValue("A", "k", "none"), "none");
    EXPECT_EQ(m_reader.GetStringValue("A", "k", "none"), "1");
}

using LoadSection = IniFile;

TEST_F(LoadSection, ReadsTheFirstOneOfThatNameAlone)
{
    const std::string text = "k=0\n[B]\nk=1\nk=2\n;[C]\n[B]\nk=3\nj=4\n[]\n[C]\nk=5\n";
    EXPECT_THAT(SectionList(WithSection(text, "B")), ElementsAre("B"));
    EXPECT_EQ(m_reader.GetStringValue("B", "k", ""), "2");
    EXPECT_EQ(m_reader.GetStringValue("B", "j", "none"), "none"); // the second block ends the first, name or not
    EXPECT_EQ(WithSection(text, "C").GetStringValue("C", "k", ""), "5");
    EXPECT_EQ(m_reader.GetStringValue("B", "k", "none"), "none");
}

TEST_F(LoadSection, OfANameThatNoHeaderHasLeavesNoValues)
{
    for (const std::string section : {"", "a", "A ", "[A]", "AB"})
        EXPECT_THAT(SectionList(WithSection("k=0\n[A]\nk=1\n", section)), IsEmpty()) << section;
    EXPECT_FALSE(m_reader.LoadSection(MissingFile(), "A"));
}

using GetStringValue = IniFile;

TEST_F(GetStringValue, GivesTheDefaultOnlyWhenSectionOrKeyIsMissing)
{
    With("[A]\nk=1\nempty=\n");
    EXPECT_EQ(m_reader.GetStringValue("A", "k", "default"), "1");
    EXPECT_EQ(m_reader.GetStringValue("A", "empty", "default"), "");
    for (const std::string key : {"", "K", "k ", "k=", "k=1", "kk", "emp"})
        EXPECT_EQ(m_reader.GetStringValue("A", key, "default"), "default") << key;
    EXPECT_EQ(m_reader.GetStringValue("a", "k", "default"), "default");
    EXPECT_EQ(m_reader.GetStringValue("", "k", "default"), "default");
}

class Conversion : public IniFile
{
protected:
    IniReader& WithValue(const std::string& value) { return With("k=" + value + "\n"); }
};

TEST_F(Conversion, ToAnIntegerTakesTheNumberAtTheStart)
{
    const std::map<std::string, int> rows{{"-7", -7},  {"+7", 7},   {"12abc", 12},           {"1.9", 1},
                                          {"0x10", 0}, {"010", 10}, {"2147483647", INT_MAX}, {"-2147483648", INT_MIN}};
    for (const auto& [text, number] : rows)
    {
        EXPECT_EQ(WithValue(text).GetIntegerValue("", "k", 5), number) << text;
        EXPECT_EQ(m_reader.GetBoolValue("", "k", number == 0), number != 0) << text;
    }
    EXPECT_EQ(m_reader.GetIntegerValue("", "missing", 5), 5);
    EXPECT_TRUE(m_reader.GetBoolValue("", "missing", true));
    EXPECT_FALSE(m_reader.GetBoolValue("missing", "k", false));
}

TEST_F(Conversion, ToAnIntegerThrowsWhatIsNone)
{
    for (const std::string text : {"", "abc", "true", "yes", "-"})
    {
        const auto message = ThrowsMessage<std::invalid_argument>(StrEq("invalid stoi argument"));
        EXPECT_THAT([&] { WithValue(text).GetIntegerValue("", "k", 5); }, message) << text;
        EXPECT_THAT([&] { WithValue(text).GetBoolValue("", "k", true); }, message) << text;
    }
    for (const std::string text : {"2147483648", "-2147483649", "99999999999999999999"})
    {
        const auto message = ThrowsMessage<std::out_of_range>(StrEq("stoi argument out of range"));
        EXPECT_THAT([&] { WithValue(text).GetIntegerValue("", "k", 5); }, message) << text;
        EXPECT_THAT([&] { WithValue(text).GetBoolValue("", "k", true); }, message) << text;
    }
}

TEST_F(Conversion, ToAFloatTakesTheNumberAtTheStart)
{
    const std::map<std::string, float> rows{{"1.5", 1.5F}, {"-2", -2.0F}, {".25m", 0.25F}, {"1e3 kN", 1000.0F}};
    for (const auto& [text, number] : rows)
        EXPECT_EQ(WithValue(text).GetFloatValue("", "k", 9.0F), number) << text;
    EXPECT_EQ(m_reader.GetFloatValue("", "missing", 9.0F), 9.0F);
    EXPECT_THAT([&] { WithValue("kN").GetFloatValue("", "k", 9.0F); },
                ThrowsMessage<std::invalid_argument>(StrEq("invalid stof argument")));
    for (const std::string text : {"1e39", "-1e39", "1e-60"})
    {
        EXPECT_THAT([&] { WithValue(text).GetFloatValue("", "k", 9.0F); },
                    ThrowsMessage<std::out_of_range>(StrEq("stof argument out of range")))
            << text;
    }
}

TEST_F(Conversion, NeitherNeedsNorChangesErrno)
{
    WithValue("99999999999999999999\nsmall=1");
    errno = ERANGE;
    EXPECT_EQ(m_reader.GetIntegerValue("", "small", 0), 1);
    EXPECT_EQ(errno, ERANGE);
    errno = 0;
    EXPECT_THROW(m_reader.GetIntegerValue("", "k", 0), std::out_of_range);
    EXPECT_EQ(errno, 0);
}

using GetSectionList = IniFile;

TEST_F(GetSectionList, IsInAscendingOrderOfUnsignedBytes)
{
    EXPECT_THAT(SectionList(m_reader), IsEmpty());
    With("k=\n[b]\nk=\n[\xC3\xA4]\nk=\n[B]\nk=\n[ab]\nk=\n[a]\nk=\n");
    EXPECT_THAT(SectionList(m_reader), ElementsAre("", "B", "a", "ab", "b", "\xC3\xA4"));
}

using GetKeyValuePairListBySection = IniFile;

const auto ThrowsNoSuchKey = ThrowsMessage<std::out_of_range>(StrEq("invalid map<K, T> key"));

TEST_F(GetKeyValuePairListBySection, IsInFileOrderWithTheLastValueOfEachKey)
{
    With("[A]\nz=1\na=2\nz=3\n[B]\nb=4\n[A]\nm=5\n");
    EXPECT_EQ(PairList(m_reader, "A"), (Pairs{{"z", "3"}, {"a", "2"}, {"z", "3"}, {"m", "5"}}));
    EXPECT_THAT(PairList(m_reader, "C"), IsEmpty());

    std::vector<IniKeyValue> list{{"B", ""}};
    EXPECT_EQ(m_reader.GetKeyValuePairListBySection(list[0].Key, list), 1);
}

TEST_F(GetKeyValuePairListBySection, ContinuesTheOrderOfEarlierFiles)
{
    With("[A]\nx=1\ny=2\n");
    m_reader.LoadFile(MissingFile());
    EXPECT_THAT(PairList(m_reader, "A"), IsEmpty());
    With("[B]\nz=0\n");
    With("[A]\ny=3\nx=4\n");
    EXPECT_EQ(PairList(m_reader, "A"), (Pairs{{"x", "4"}, {"y", "3"}, {"y", "3"}, {"x", "4"}}));
    WithSection("[A]\nx=5\ny=6\nz=7\n", "A"); // adds no key to the order
    EXPECT_EQ(PairList(m_reader, "A"), (Pairs{{"x", "5"}, {"y", "6"}, {"y", "6"}, {"x", "5"}}));
}

TEST_F(GetKeyValuePairListBySection, ThrowsWhenAKeyOfAnEarlierFileIsGone)
{
    With("[A]\nx=1\ny=2\n");
    With("[A]\nx=3\n");
    std::vector<IniKeyValue> list;
    EXPECT_THAT([&] { m_reader.GetKeyValuePairListBySection("A", list); }, ThrowsNoSuchKey);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].Value, "3");
}

TEST_F(GetKeyValuePairListBySection, ThrowsWhenOnlyLoadSectionHasReadTheSection)
{
    EXPECT_THAT([&] { PairList(WithSection("[A]\nx=1\n", "A"), "A"); }, ThrowsNoSuchKey);
}
} // namespace
