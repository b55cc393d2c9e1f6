#include <IniReader.h>

#include <cstddef>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ini/ReferenceIniReader.h"
#include "ini/TemporaryFolder.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace std::string_view_literals;

/// Numbers that are the same on every system, which those of the standard distributions are not.
class Dice final
{
public:
    explicit Dice(unsigned seed) : m_engine{seed} {}
    std::size_t operator()(std::size_t below) { return m_engine() % below; }

private:
    std::mt19937 m_engine;
};

/// Everything that has a meaning, or seems to have one, in any order. Few names, so that they meet again.
constexpr std::string_view Pieces[] = {
    "["sv, "]"sv, "[]"sv, "[A]"sv, "[B]"sv, "[ A ]"sv, "A]"sv, "="sv,  "="sv, " = "sv, "key"sv,  "key"sv,
    "k"sv, "a"sv, "1"sv,  " "sv,   "\t"sv,  "\v\f"sv,  "\r"sv, "\0"sv, ";"sv, "#"sv,   "\xFF"sv, "\xEF\xBB\xBF"sv,
};
constexpr std::string_view Headers[] = {"[A]"sv, "[B]"sv, " [ A ]\r"sv, "A]"sv, "[AB"sv, "[a]"sv};

std::string RandomLine(Dice& dice)
{
    if (dice(8) == 0)
        return std::string{Headers[dice(std::size(Headers))]};
    std::string line;
    for (std::size_t count = dice(7); count != 0; --count)
        line += Pieces[dice(std::size(Pieces))];
    return line;
}

std::string SmallFile(Dice& dice)
{
    std::string text;
    for (std::size_t count = dice(50); count != 0; --count)
    {
        text += RandomLine(dice);
        text += dice(4) == 0 ? "\r\n" : "\n";
    }
    if (dice(3) == 0)
        text += RandomLine(dice); // without a line feed
    if (dice(10) == 0)
        text.insert(dice(text.length() + 1), 1, '\x1A'); // on Windows the end of the text, elsewhere a byte
    return text;
}

/// Lines of up to `longest` bytes, so that what has a meaning stands at all sorts of offsets.
std::string LargeFile(Dice& dice, std::size_t longest)
{
    std::string text;
    while (text.length() < 400'000)
    {
        text += RandomLine(dice);
        const char filling = "x =["[dice(4)];
        text.append(dice(longest), filling);
        text += RandomLine(dice);
        text += dice(2) == 0 ? "\r\n" : "\n";
    }
    return text;
}

using PairList = std::pair<bool, std::vector<std::pair<std::string, std::string>>>;

/// The list, with what it holds before an exception, and whether there was one.
template<class Reader>
PairList PairsOf(const Reader& reader, const std::string& section)
{
    PairList result;
    std::vector<IniKeyValue> list;
    try
    {
        reader.GetKeyValuePairListBySection(section, list);
    }
    catch (const std::out_of_range&)
    {
        result.first = true;
    }
    for (const auto& [key, value] : list)
        result.second.emplace_back(key, value);
    return result;
}

/// An IniReader and its reference, loaded and asked alike.
class BothReaders final
{
public:
    void LoadFile(const std::filesystem::path& path)
    {
        EXPECT_EQ(m_reader.LoadFile(path.wstring()), m_reference.LoadFile(path));
        ExpectSameAnswers();
    }

    void LoadSection(const std::filesystem::path& path, const std::string& section)
    {
        EXPECT_EQ(m_reader.LoadSection(path.wstring(), section), m_reference.LoadSection(path, section));
        ExpectSameAnswers();
    }

    /// Loads about ten of the sections that the last file had, one after the other.
    void LoadSections(const std::filesystem::path& path)
    {
        const std::vector<std::string> sections = Names();
        for (std::size_t i = 0; i < sections.size(); i += 1 + sections.size() / 10)
            LoadSection(path, sections[i]);
    }

private:
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& section : m_reference.AllValues())
            names.push_back(section.first);
        return names;
    }

    void ExpectSameAnswers() const
    {
        std::vector<std::string> sections;
        m_reader.GetSectionList(sections);
        ASSERT_EQ(sections, Names());
        for (const auto& [section, keys] : m_reference.AllValues())
        {
            ASSERT_EQ(PairsOf(m_reader, section), PairsOf(m_reference, section)) << section;
            for (const auto& [key, value] : keys)
                ASSERT_EQ(m_reader.GetStringValue(section, key, "missing"), value) << section << ' ' << key;
            for (const std::string key : {"", "k", "key", "keykey", "a", "=", "[A]"})
                ASSERT_EQ(m_reader.GetStringValue(section, key, "missing") == "missing", !keys.contains(key)) << key;
        }
    }

    IniReader m_reader;
    ReferenceIniReader m_reference;
};

class IniReaderAndReference : public ::testing::Test
{
protected:
    TemporaryFolder m_folder;
};

TEST_F(IniReaderAndReference, AgreeOnSmallFilesLoadedOneAfterTheOther)
{
    for (unsigned seed = 0; seed < 200 && !HasFailure(); ++seed)
    {
        SCOPED_TRACE(seed);
        Dice dice{seed};
        BothReaders readers;
        const std::filesystem::path first = m_folder.Write(SmallFile(dice), "first.ini");
        const std::filesystem::path second = m_folder.Write(SmallFile(dice), "second.ini");
        readers.LoadFile(first);
        readers.LoadSections(first);
        if (dice(2) == 0)
            readers.LoadFile(second);
        if (dice(2) == 0)
            readers.LoadFile(m_folder.Path() / "missing.ini");
        readers.LoadFile(first);
        readers.LoadSections(second);
    }
}

TEST_F(IniReaderAndReference, AgreeOnLinesThatCrossTheBlocksOfAFile)
{
    unsigned seed = 1000;
    for (const std::size_t longest : {3U, 80U, 5000U, 70000U})
    {
        SCOPED_TRACE(longest);
        Dice dice{seed++};
        BothReaders readers;
        const std::filesystem::path path = m_folder.Write(LargeFile(dice, longest));
        readers.LoadFile(path);
        readers.LoadSections(path);
    }
}

TEST_F(IniReaderAndReference, AgreeOnALineEndAtEveryOffsetAroundABlock)
{
    for (const std::size_t block : {4096U, 65536U})
    {
        for (std::size_t length = block - 12; length < block + 3; ++length)
        {
            SCOPED_TRACE(length);
            BothReaders readers;
            const std::string comment = ";" + std::string(length - 1, 'x');
            readers.LoadFile(m_folder.Write(comment + "\n[A]\r\nk=1\r\n[B]\nk=2"));
            readers.LoadFile(m_folder.Write("[A]\n" + std::string(length, 'k') + "=1"));
            readers.LoadFile(m_folder.Write("[" + std::string(length, 'A') + "]\nk=1\n"));
        }
    }
}
} // namespace
