#include <IniReader.h>

#include <algorithm>
#include <climits>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "files/ReadToEnd.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

using Pairs = std::vector<std::pair<std::string, std::string>>;

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

class IniReaderTest : public ::testing::Test
{
protected:
    std::filesystem::path Write(const std::string& text, const char8_t* name = u8"test.ini") const
    {
        WriteFile(m_machine.Root() / name, text);
        return m_machine.Root() / name;
    }

    /// A reader that has loaded the text as a file.
    IniReader& With(const std::string& text)
    {
        EXPECT_TRUE(m_reader.LoadFile(Write(text).wstring()));
        return m_reader;
    }

    IniReader& WithSection(const std::string& text, const std::string& section)
    {
        EXPECT_TRUE(m_reader.LoadSection(Write(text).wstring(), section));
        return m_reader;
    }

    const ScratchMachine m_machine;
    IniReader m_reader;
};

struct Lines
{
    const char* name;
    std::string text;
    std::map<std::string, Pairs> sections;
};

// clang-format off
const Lines Rows[] = {
    {"carriage return inside a line", "a=1\rb=2\n", {{"", {{"a", "1\rb=2"}}}}},
    {"all six white spaces", "\v\f\t key \r=\f a b\v\r\t\n", {{"", {{"key", "a b"}}}}},
    {"other blanks are text", "\xC2\xA0k=\x01\n", {{"", {{"\xC2\xA0k", "\x01"}}}}},
    {"NULs are text", "a\0b=\0c\n"s, {{"", {{"a\0b"s, "\0c"s}}}}},
    {"first equals sign separates", "key = a=b\n=x\nempty=\nnone\n",
        {{"", {{"key", "a=b"}, {"", "x"}, {"empty", ""}}}}},
    {"comments only at the start of a line", "  ;x=1\n#y=2\n;[A]\n#]\nz=1 ;note\n", {{"", {{"z", "1 ;note"}}}}},
    {"one bracket makes a header", " [ Main ] \na=1\nMain]\nb=2\n[Main\nc=3\n",
        {{"Main", {{"a", "1"}}}, {"ain", {{"b", "2"}}}, {"Mai", {{"c", "3"}}}}},
    {"brackets inside a line are text", "a[0]=1\nb=[1] \n c=x]y\n", {{"", {{"a[0]", "1"}}}, {"=[1", {{"c", "x]y"}}}}},
    {"no name makes no header", "a=1\n[]\n[ ]\n[\n]\n[=\n=]\n= ]\nb=2\n",
        {{"", {{"a", "1"}, {"[", ""}, {"", "]"}, {"", "]"}, {"b", "2"}}}}},
    {"byte order mark is part of the name", "\xEF\xBB\xBF[Main]\nk=v\n", {{"\xBB\xBF[Main", {{"k", "v"}}}}},
    {"sections are united, the last value is used, the file's order stays", "[A]\nz=1\n[B]\nz=9\n[A]\na=3\nz=2\n",
        {{"A", {{"z", "2"}, {"a", "3"}, {"z", "2"}}}, {"B", {{"z", "9"}}}}},
    {"sections without keys do not exist", "[A]\n; k=1\n[B]\n\nnoise\n[C]\n[D]\nk=\n", {{"D", {{"k", ""}}}}},
};
// clang-format on

// What these rules make of any other text, the fuzz target compares with a plain reader.
TEST_F(IniReaderTest, StoresWhatTheRulesOfLinesSay)
{
    for (const Lines& row : Rows)
    {
        IniReader reader; // a used one remembers keys
        EXPECT_TRUE(reader.LoadFile(Write(row.text).wstring()));
        std::map<std::string, Pairs> sections;
        for (const std::string& section : SectionList(reader))
            sections[section] = PairList(reader, section);
        EXPECT_EQ(sections, row.sections) << row.name;
    }
}

TEST_F(IniReaderTest, IsEmptyAfterAFailedLoadAndAsACopy)
{
    const IniReader copy{With("[A]\nk=1\n")};
    EXPECT_THAT(SectionList(copy), IsEmpty());
    EXPECT_EQ(m_reader.GetStringValue("A", "k", "none"), "1");
    EXPECT_TRUE(m_reader.LoadFile(m_machine.Root().wstring())) << "is there, but cannot be opened";
    EXPECT_THAT(SectionList(m_reader), IsEmpty());
    EXPECT_FALSE(m_reader.LoadFile(L"missing.ini"));
    EXPECT_FALSE(m_reader.LoadSection(L"missing.ini", "A"));
}

TEST_F(IniReaderTest, NarrowPathsAreUtf8InAnyLetterCase)
{
    const std::u8string utf8 = Write("[A]\nk=1\n", u8"Tr\u00E4ger \u6881.ini").u8string();
    std::string file{utf8.begin(), utf8.end()};
    EXPECT_TRUE(m_reader.LoadFile(file));
    EXPECT_EQ(m_reader.GetIntegerValue("A", "k", 0), 1);
    EXPECT_TRUE(m_reader.LoadSection(file.replace(file.length() - 3, 3, "INI"), "A"));
    EXPECT_EQ(m_reader.GetIntegerValue("A", "k", 0), 1);
}

TEST_F(IniReaderTest, CtrlZEndsTheTextAsInTheRuntime)
{
    const std::string text = "[A]\r\nk=1\r\n\x1A\nk=2\n";
    std::ifstream stream{Write(text)};
    const auto runtime = std::string{std::istreambuf_iterator<char>{stream}, {}};
    EXPECT_EQ(With(text).GetStringValue("A", "k", ""), runtime.find('2') == runtime.npos ? "1" : "2");
}

TEST_F(IniReaderTest, ReadsFilesWhoseSizeIsNotKnown)
{
    const std::string content(10'000, 'x');
    for (const std::int64_t guess : {0, 9'999, 10'000, 20'000})
    {
        std::size_t taken = 0;
        const auto read = [&](char* place, std::size_t count)
        {
            count = content.copy(place, std::min<std::size_t>(count, 3'000), taken);
            taken += count;
            return static_cast<int>(count);
        };
        Quenlor::TextFile text;
        EXPECT_TRUE(Quenlor::ReadToEnd(text, guess, read));
        EXPECT_EQ(text.View(), content) << guess;
    }
}

TEST_F(IniReaderTest, LoadSectionTakesOnlyTheFirstOfItsName)
{
    const std::string text = "k=0\n[B]\nk=1\nk=2\n;[C]\n[B]\nk=3\nj=4\n[]\n[C]\nk=5\n";
    EXPECT_THAT(SectionList(WithSection(text, "B")), ElementsAre("B"));
    EXPECT_EQ(m_reader.GetStringValue("B", "k", ""), "2");
    EXPECT_EQ(m_reader.GetStringValue("B", "j", "none"), "none"); // the second block ends the first, name or not
    EXPECT_EQ(WithSection(text, "C").GetStringValue("C", "k", ""), "5");
    for (const std::string section : {"", "b", "B ", "[B]", "BB"})
        EXPECT_THAT(SectionList(WithSection(text, section)), IsEmpty()) << section;
}

TEST_F(IniReaderTest, TheDefaultIsForMissingKeys)
{
    With("[A]\nk=1\nempty=\n");
    EXPECT_EQ(m_reader.GetStringValue("A", "empty", "default"), "");
    for (const std::string key : {"", "K", "k ", "k=1", "emp"})
        EXPECT_EQ(m_reader.GetStringValue("A", key, "default"), "default") << key;
    EXPECT_EQ(m_reader.GetIntegerValue("a", "k", 5), 5);
    EXPECT_TRUE(m_reader.GetBoolValue("A", "missing", true));
    EXPECT_EQ(m_reader.GetFloatValue("A", "missing", 9.0F), 9.0F);
}

TEST_F(IniReaderTest, ANumberIsReadAtTheStart)
{
    const std::map<std::string, int> integers{{"+7", 7}, {"0x10", 0}, {"010 mm", 10}, {"-2147483648", INT_MIN}};
    for (const auto& [text, number] : integers)
    {
        EXPECT_EQ(With("k=" + text).GetIntegerValue("", "k", 5), number) << text;
        EXPECT_EQ(m_reader.GetBoolValue("", "k", number == 0), number != 0) << text;
    }
    EXPECT_EQ(With("k=-.25e1 kN").GetFloatValue("", "k", 9.0F), -2.5F);

    const auto asInteger = [this] { m_reader.GetIntegerValue("", "k", 5); };
    const auto asBool = [this] { m_reader.GetBoolValue("", "k", true); };
    const auto asFloat = [this] { m_reader.GetFloatValue("", "k", 9.0F); };
    With("k=true");
    EXPECT_THAT(asInteger, ThrowsMessage<std::invalid_argument>(StrEq("invalid stoi argument")));
    EXPECT_THAT(asBool, ThrowsMessage<std::invalid_argument>(StrEq("invalid stoi argument")));
    EXPECT_THAT(asFloat, ThrowsMessage<std::invalid_argument>(StrEq("invalid stof argument")));
    With("k=2147483648");
    EXPECT_THAT(asInteger, ThrowsMessage<std::out_of_range>(StrEq("stoi argument out of range")));
    With("k=1e-60");
    EXPECT_THAT(asFloat, ThrowsMessage<std::out_of_range>(StrEq("stof argument out of range")));
}

TEST_F(IniReaderTest, SectionsAreInOrderOfUnsignedBytesAndPairsOfAllFiles)
{
    With("k=\n[b]\nk=\n[\xC3\xA4]\nk=\n[B]\nk=\n[ab]\nk=\n");
    EXPECT_THAT(SectionList(m_reader), ElementsAre("", "B", "ab", "b", "\xC3\xA4"));
    std::vector<IniKeyValue> list{{"B", ""}};
    EXPECT_EQ(m_reader.GetKeyValuePairListBySection(list[0].Key, list), 1);
    const auto listPairs = [&] { m_reader.GetKeyValuePairListBySection("A", list); };
    WithSection("[A]\nx=1\n", "A"); // adds no key to the order
    EXPECT_THAT(listPairs, ThrowsMessage<std::out_of_range>(StrEq("invalid map<K, T> key")));
    With("[A]\nx=1\ny=2\n");
    m_reader.LoadFile(L"missing.ini");
    EXPECT_THAT(PairList(m_reader, "A"), IsEmpty());
    With("[A]\ny=3\nx=4\n");
    EXPECT_EQ(PairList(m_reader, "A"), (Pairs{{"x", "4"}, {"y", "3"}, {"y", "3"}, {"x", "4"}}));
    With("[A]\nx=5\n"); // without y, which the order has
    EXPECT_THAT(listPairs, ThrowsMessage<std::out_of_range>(StrEq("invalid map<K, T> key")));
    EXPECT_EQ(list.at(0).Value, "5");
    EXPECT_EQ(list.size(), 1U);
}
} // namespace
