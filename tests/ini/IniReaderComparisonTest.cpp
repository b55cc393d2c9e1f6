#include <IniReader.h>

#include <cstddef>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "ini/ReferenceIniReader.h"
#include "support/TemporaryFolder.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace std::string_view_literals;

/// Everything that has a meaning, or seems to have one, in any order. Few names, so that they meet again.
// clang-format off
constexpr std::string_view Pieces[] = {
    "["sv, "]"sv, "[]"sv, "[A]"sv, "[B]"sv, "[ A ]"sv, "A]"sv, "="sv, "="sv, " = "sv, "key"sv, "key"sv, "k"sv, "a"sv,
    "1"sv, " "sv, "\t"sv, "\v\f"sv, "\r"sv, "\0"sv, ";"sv, "#"sv, "\xFF"sv, "\xEF\xBB\xBF"sv,
    "\n"sv, "\n"sv, "\n"sv, "\n"sv, "\r\n"sv, "\r\n"sv, "\n[A]\n"sv, "\n [ B ]\r\n"sv, "\n[a]\n"sv};
// clang-format on

/// With up to `longest` bytes of one kind here and there, so that what has a meaning stands at all sorts of offsets.
// The engine's numbers are the same on every system, which those of the standard distributions are not.
std::string RandomFile(std::mt19937& dice, std::size_t size, std::size_t longest = 0)
{
    std::string text;
    while (text.length() < size)
    {
        text += Pieces[dice() % std::size(Pieces)];
        const char filling = "x =["[dice() % 4];
        if (dice() % 8 == 0)
            text.append(dice() % (longest + 1), filling);
    }
    if (dice() % 10 == 0)
        text.insert(dice() % (text.length() + 1), 1, '\x1A'); // on Windows the end of the text, elsewhere a byte
    return text;
}

/// The list, with what it holds before an exception, and whether there was one.
template<class Reader>
std::vector<std::string> PairsOf(const Reader& reader, const std::string& section)
{
    std::vector<std::string> result;
    std::vector<IniKeyValue> list;
    try
    {
        reader.GetKeyValuePairListBySection(section, list);
    }
    catch (const std::out_of_range&)
    {
        result.emplace_back("exception");
    }
    for (const auto& [key, value] : list)
        result.insert(result.end(), {key, value});
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

    /// Loads about ten of the sections that the last file had, one after the other.
    void LoadSections(const std::filesystem::path& path)
    {
        std::vector<std::string> sections;
        m_reader.GetSectionList(sections);
        for (std::size_t i = 0; i < sections.size(); i += 1 + sections.size() / 10)
        {
            EXPECT_EQ(m_reader.LoadSection(path.wstring(), sections[i]), m_reference.LoadSection(path, sections[i]));
            ExpectSameAnswers();
        }
    }

private:
    void ExpectSameAnswers() const
    {
        std::vector<std::string> sections;
        m_reader.GetSectionList(sections);
        ASSERT_EQ(sections.size(), m_reference.AllValues().size());
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

TEST(IniReaderAndReference, AgreeOnSmallFilesLoadedOneAfterTheOther)
{
    const TemporaryFolder folder;
    for (unsigned seed = 0; seed < 200 && !HasFailure(); ++seed)
    {
        SCOPED_TRACE(seed);
        std::mt19937 dice{seed};
        BothReaders readers;
        const std::filesystem::path first = folder.Write(RandomFile(dice, dice() % 500), "first.ini");
        const std::filesystem::path second = folder.Write(RandomFile(dice, dice() % 500), "second.ini");
        readers.LoadFile(first);
        readers.LoadSections(first);
        if (dice() % 2 == 0)
            readers.LoadFile(second);
        readers.LoadFile(folder.Path() / "missing.ini");
        readers.LoadFile(first);
        readers.LoadSections(second);
    }
}

TEST(IniReaderAndReference, AgreeOnLinesThatCrossTheBlocksOfAFile)
{
    const TemporaryFolder folder;
    for (const unsigned longest : {3U, 80U, 5000U, 70000U})
    {
        SCOPED_TRACE(longest);
        std::mt19937 dice{longest};
        BothReaders readers;
        const std::filesystem::path path = folder.Write(RandomFile(dice, 400'000, longest));
        readers.LoadFile(path);
        readers.LoadSections(path);
    }
    for (const std::size_t block : {4096U, 65536U})
    {
        for (std::size_t length = block - 12; length < block + 3; ++length)
        {
            SCOPED_TRACE(length);
            BothReaders readers;
            readers.LoadFile(folder.Write(";" + std::string(length - 1, 'x') + "\n[A]\r\nk=1\r\n[B]\nk=2"));
            readers.LoadFile(folder.Write("[A]\n" + std::string(length, 'k') + "=1"));
            readers.LoadFile(folder.Write("[" + std::string(length, 'A') + "]\nk=1\n"));
        }
    }
}
} // namespace
