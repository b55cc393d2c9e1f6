#include <IniReader.h>

#include <algorithm>
#include <climits>
#include <sstream>
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
using ::testing::ElementsAre;
using ::testing::FieldsAre;
using ::testing::IsEmpty;
using ::testing::ThrowsMessage;

class IniReaderTest : public ::testing::Test
{
protected:
    std::filesystem::path Write(const std::string& text, const char8_t* name = u8"test.ini") const
    {
        WriteFile(m_machine.Root() / name, text);
        return m_machine.Root() / name;
    }

    /// The reader, which has loaded the text as a file.
    IniReader& With(const std::string& text)
    {
        EXPECT_TRUE(m_reader.LoadFile(Write(text).wstring()));
        return m_reader;
    }

    std::vector<std::string> Sections() const
    {
        std::vector<std::string> names{"left over"};
        const int count = m_reader.GetSectionList(names);
        EXPECT_EQ(count, static_cast<int>(names.size()));
        return names;
    }

    std::vector<IniKeyValue> PairsOf(const std::string& section) const
    {
        std::vector<IniKeyValue> pairs{{section, "left over"}};
        const int count = m_reader.GetKeyValuePairListBySection(pairs[0].Key, pairs); // the name is one that goes
        EXPECT_EQ(count, static_cast<int>(pairs.size()));
        return pairs;
    }

    const ScratchMachine m_machine;
    IniReader m_reader;
};

// What the rules of lines make of any other text, IniReaderFuzz compares with a plain reader.
TEST_F(IniReaderTest, FindsSectionsKeysAndValues)
{
    With(
        "top=0\n[ Main ] \r\n key\t= a=b\n  ;x=1\n#y=2\nnote=1 ;2\nnone\nMain]\nk[0]=\xC3\xA4\n[Main]\nnote=3\nempty=\n"
        "[D]\n;only=1\n[b]\n=x\n");
    EXPECT_THAT(Sections(), ElementsAre("", "Main", "ain", "b"));
    EXPECT_THAT(PairsOf("Main"), ElementsAre(FieldsAre("key", "a=b"), FieldsAre("note", "3"), FieldsAre("note", "3"),
                                             FieldsAre("empty", "")));
    EXPECT_THAT(PairsOf("ain"), ElementsAre(FieldsAre("k[0]", "\xC3\xA4")));
    EXPECT_EQ(m_reader.GetStringValue("b", "", "none"), "x");
    EXPECT_EQ(m_reader.GetStringValue("Main", "empty", "none"), "");
    for (const std::string key : {"", "Key", "key ", "k", "x", ";x"})
        EXPECT_EQ(m_reader.GetStringValue("Main", key, "none"), "none") << key;
    EXPECT_EQ(m_reader.GetIntegerValue("main", "note", 5), 5);
}

TEST_F(IniReaderTest, IsEmptyAfterAFailedLoadAndAsACopy)
{
    const IniReader copy{With("[A]\nk=1\n")};
    EXPECT_EQ(copy.GetStringValue("A", "k", "none"), "none");
    EXPECT_FALSE(m_reader.LoadFile(L"missing.ini"));
    EXPECT_THAT(Sections(), IsEmpty());
    EXPECT_TRUE(m_reader.LoadFile(m_machine.Root().wstring())) << "is there, but cannot be opened";
}

TEST_F(IniReaderTest, NarrowPathsAreUtf8InAnyLetterCase)
{
    const std::u8string utf8 = Write("[A]\nk=1\n", u8"Tr\u00E4ger \u6881.ini").u8string();
    std::string file{utf8.begin(), utf8.end()};
    EXPECT_TRUE(m_reader.LoadFile(file));
    EXPECT_TRUE(m_reader.LoadSection(file.replace(file.length() - 3, 3, "INI"), "A"));
    EXPECT_EQ(m_reader.GetIntegerValue("A", "k", 0), 1);
}

TEST(ReadToEnd, ReadsAllWhateverTheSizeIsThoughtToBe)
{
    const std::string content(10'000, 'x');
    for (const std::int64_t guess : {0, 9'999, 10'000, 20'000})
    {
        std::istringstream source{content};
        const auto read = [&](char* place, std::size_t count)
        { return source.readsome(place, std::min<std::streamsize>(static_cast<std::streamsize>(count), 3'000)); };
        Quenlor::TextFile text;
        EXPECT_TRUE(Quenlor::ReadToEnd(text, guess, read));
        EXPECT_EQ(text.View(), content) << guess;
    }
}

TEST_F(IniReaderTest, LoadSectionTakesOnlyTheFirstOfItsName)
{
    const std::wstring file = Write("k=0\n[B]\nk=1\n[B]\nj=4\n").wstring();
    EXPECT_TRUE(m_reader.LoadSection(file, "B"));
    EXPECT_THAT(Sections(), ElementsAre("B"));
    EXPECT_EQ(m_reader.GetStringValue("B", "k", "none"), "1");
    EXPECT_EQ(m_reader.GetStringValue("B", "j", "none"), "none"); // the second ends the first, name or not
}

TEST_F(IniReaderTest, ANumberIsReadAtTheStart)
{
    EXPECT_EQ(With("k=+010 mm").GetIntegerValue("", "k", 5), 10);
    EXPECT_TRUE(m_reader.GetBoolValue("", "k", false));
    EXPECT_FALSE(With("k=0x10").GetBoolValue("", "k", true));
    EXPECT_EQ(With("k=-2147483648").GetIntegerValue("", "k", 5), INT_MIN);
    EXPECT_EQ(With("k=-.25e1 kN").GetFloatValue("", "k", 9.0F), -2.5F);
    const auto number = [this] { m_reader.GetIntegerValue("", "k", 5); };
    const auto real = [this] { m_reader.GetFloatValue("", "k", 9.0F); };
    With("k=true");
    EXPECT_THAT(number, ThrowsMessage<std::invalid_argument>("invalid stoi argument"));
    EXPECT_THAT(real, ThrowsMessage<std::invalid_argument>("invalid stof argument"));
    With("k=2147483648e-60");
    EXPECT_THAT(number, ThrowsMessage<std::out_of_range>("stoi argument out of range"));
    EXPECT_THAT(real, ThrowsMessage<std::out_of_range>("stof argument out of range"));
}

TEST_F(IniReaderTest, PairsAreInTheOrderOfAllFiles)
{
    With("[A]\nx=1\ny=2\n");
    EXPECT_FALSE(m_reader.LoadFile(L"missing.ini"));
    EXPECT_THAT(PairsOf("A"), IsEmpty());
    With("[A]\ny=3\n");
    EXPECT_THAT([this] { PairsOf("A"); }, ThrowsMessage<std::out_of_range>("invalid map<K, T> key")); // x has no value
    With("[A]\ny=5\nx=4\n");
    EXPECT_THAT(PairsOf("A"), ElementsAre(FieldsAre("x", "4"), FieldsAre("y", "5"), FieldsAre("y", "5"),
                                          FieldsAre("y", "5"), FieldsAre("x", "4")));
}
} // namespace
