#include <cstddef>
#include <random>
#include <regex>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include "registry/Key.h"
#include "registry/RegistryFileReader.h"
#include "registry/RegistryFileWriter.h"
#include "registry/RegistryText.h"
#include "registry/TreeLoader.h"

namespace
{
using namespace Quenlor::StandIn::Registry;
using namespace std::string_literals;
using namespace std::string_view_literals;

/// Bytes as themselves if they can be read, otherwise as a backslash and two hexadecimal digits.
std::string Readable(std::string_view bytes)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes)
    {
        const auto code = static_cast<unsigned char>(byte);
        if (code > ' ' && code < 0x7F)
            text += byte;
        else
            text.append({'\\', digits[code >> 4], digits[code & 0xF]});
    }
    return text;
}

std::string Described(std::string_view name, DWORD type, std::string_view data)
{
    return std::string{name} + '=' + std::to_string(type) + ':' + Readable(data);
}

/// Notes what a registry file asks for: "[key] [-key] name=type:bytes name-", with blanks between.
class Recorder final : public RegistryFileHandler
{
public:
    bool BeginKey(HKEY root, std::string_view path) override { return Note("[" + Name(root, path) + "]"); }
    bool DeleteKey(HKEY root, std::string_view path) override { return Note("[-" + Name(root, path) + "]"); }
    void SetValue(std::string_view name, DWORD type, std::string_view data) override
    {
        Note(Described(name, type, data));
    }
    void DeleteValue(std::string_view name) override { Note(std::string{name} + "-"); }

    std::string notes;

private:
    static std::string Name(HKEY root, std::string_view path)
    {
        const char* const name = root == HKEY_CURRENT_USER ? "U:" : root == HKEY_LOCAL_MACHINE ? "M:" : "C:";
        return std::string{name}.append(path);
    }

    bool Note(const std::string& note)
    {
        notes += ' ' + note;
        return true;
    }
};

/// What a file asks for, and one exclamation mark per problem.
std::string Read(std::string_view text, RegistryFileDialect dialect = RegistryFileDialect::Import)
{
    Recorder recorder;
    const RegistryFileResult result = ReadRegistryFile(text, dialect, recorder);
    if (!result.problems.empty())
        recorder.notes += ' ' + std::string(result.problems.size(), '!');
    return result.isRegistryFile ? recorder.notes.substr(1) : "not a registry file";
}

using Row = std::pair<std::string, std::string>; // a text and what is expected of it

const std::string Version5 = "Windows Registry Editor Version 5.00\n";

// ---- reading --------------------------------------------------------------------------------------------------------

// clang-format off
TEST(RegistryFileReader, TakesFilesOfAnyFormAndKeyLines)
{
    const std::string name(255, 'n');
    const Row rows[] = {
        {"REGEDIT4\n[HKEY_CURRENT_USER]\n\"a\"=hex(2):61", R"([U:] a=2:a\00)"},
        {"regedit4\n[HKEY_CURRENT_USER]\n", "not a registry file"},
        {"", "not a registry file"},
        {"\xEF\xBB\xBF" "REGEDIT4\n[HKEY_CURRENT_USER\\\xC3\xBC]\n", "[U:\xC3\xBC]"},
        {"\xFF\xFE" + ToUtf16Le("REGEDIT4\r\n[HKEY_CURRENT_USER\\\xF0\x9F\x98\x80]\r\n"), "[U:\xF0\x9F\x98\x80]"},
        {"REGEDIT4\r[HKEY_CURRENT_USER]\n\"a\"=-\r\n\r\n\"b\"=-\r\"c\"=-", "[U:] a- b- c-"},
        {"REGEDIT4\n; c\n# c\n \t\n  ; c\n [HKEY_CURRENT_USER]\n\t\"a\"=-", "[U:] a-"},
        {Version5 + "[hkey_local_machine\\A]\n[HKEY_Classes_Root\\B]", "[M:A] [C:B]"},
        {Version5 + "[HKEY_CURRENT_USER\\a]b\\\"c/ ]", "[U:a]b\\\"c/ ]"},
        {Version5 + "[HKEY_CURRENT_USER\\\\a\\\\b\\\\] ; c", "[U:a\\b]"},
        {Version5 + "[-HKEY_CURRENT_USER\\a]\n\"ignored\"=-\n[HKEY_CURRENT_USER]\n\"x\"=-", "[-U:a] [U:] x- !"},
        {Version5 + "[-HKEY_CURRENT_USER]\n[-HKEY_CURRENT_USER\\]", "!!"},
        {Version5 + "[HKEY_CURRENT_USER]\n[HKEY_NOWHERE\\a]\n\"ignored\"=-\n[HKEY_CURRENT_USER\\b]", "[U:] [U:b] !!"},
        {Version5 + "[HKEY_CURRENT_USER]\n[HKEY_CURRENT_USER\\a\n\"ignored\"=-", "[U:] !!"},
        {Version5 + "[ HKEY_CURRENT_USER]\n\"ignored\"=-", "!!"},
        {Version5 + "[HKEY_CURRENT_USER\\" + name + "]\n[HKEY_CURRENT_USER\\n" + name + "]", "[U:" + name + "] !"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(Read(text), expected) << text;
}

TEST(RegistryFileReader, TakesValueLines)
{
    const Row rows[] = {
        {"@=\"x\"\n\"\"=\"y\"", R"( =1:x\00 =1:y\00)"},
        {"\"a\" \t=\t \"x;# y\" \t; c", R"( a=1:x;#\20y\00)"},
        {R"("a\\b\"c"="d\\e\"f\n")", R"( a\b"c=1:d\e"fn\00)"},
        {"\"a\"=\"x\n\"a\"=\"x\\\"\n\"a\"=\"x\"y\n\"a\n\"a\"x=\"y\"\na=\"x\"\n\"a\"=\n\"a\"=x", " !!!!!!!!"},
        {"\"a\"=\"x\0y\"\n\"b\"=-"s, " b- !"},
        {"\"a\"=- ; c\n\"a\"=-x", " a- !"},
        {"\"a\"=dword:1\n\"b\"=dword: 1234ABcd\t; c", R"( a=4:\01\00\00\00 b=4:\CD\AB4\12)"},
        {"\"a\"=dword:\n\"a\"=dword:0x1\n\"a\"=dword:123456789\n\"a\"=dword:1 2", " !!!!"},
        {"\"a\"=hex:0,0a,FF\n\"b\"=hex:\n\"c\"=hex:1, ; c", R"( a=3:\00\0A\FF b=3: c=3:\01)"},
        {"\"a\"=hex:100\n\"a\"=hex:1,,2\n\"a\"=hex:,1\n\"a\"=hex:1 2\n\"a\"=hex:1,2g\n\"a\"=hex1", " !!!!!!"},
        {"\"a\"=hex(0):1\n\"b\"=hex(B):2\n\"c\"=hex(87654321):", R"( a=0:\01 b=11:\02 c=2271560481:)"},
        {"\"a\"=hex():1\n\"a\"=hex(123456789):1\n\"a\"=hex(1:1\n\"a\"=hex(1)1", " !!!!"},
        {"\"a\"=hex:1,\\\n  2,\\ ; c\r\n\n ; c\n\t3\n\"b\"=hex:\\\n 1", R"( a=3:\01\02\03 b=3:\01)"},
        {"\"a\"=hex:1\\\n\"b\"=-", " b- !"},
        {"\"a\"=hex:1,\\\n\"b\"=-\n\"c\"=-", " c- !"},
        {"\"a\"=hex:1,\\\n[HKEY_CURRENT_USER\\k]\n\"c\"=-", " !!"},
        {"\"a\"=hex:1,\\\n\n", R"( a=3:\01)"},
        {"\"a\"=hex(1):61,00,00,00\n\"b\"=hex(7):fc,00,00,00\n\"c\"=hex(1):", R"( a=1:a\00 b=7:\C3\BC\00 c=1:)"},
        {"\"a\"=hex(1):3d,d8,00,de,00,d8,61,00,80,dc", R"( a=1:\F0\9F\98\80\EF\BF\BDa\80\00)"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(Read(Version5 + "[HKEY_CURRENT_USER]\n" + text), "[U:]" + expected) << text;
}
// clang-format on

TEST(RegistryFileReader, NamesTheLinesOfProblems)
{
    Recorder recorder;
    const std::string file =
        Version5 + "\n[HKEY_CURRENT_USER]\r\n\"a\"=hex:1,\\\r\n  2,x\r\n \"b\"=?\r\n\"c\"=hex(7):61,00";
    const auto& problems = ReadRegistryFile(file, RegistryFileDialect::Hive, recorder).problems;
    ASSERT_EQ(problems.size(), 2U);
    EXPECT_EQ(problems[0].line, 4U);
    EXPECT_EQ(problems[0].text, "\"a\"=hex:1,\\\r\n  2,x");
    EXPECT_EQ(problems[0].reason, "malformed hexadecimal data");
    EXPECT_EQ(problems[1].line, 6U);
    EXPECT_EQ(problems[1].text, " \"b\"=?");
    EXPECT_EQ(recorder.notes, " [U:] c=7:a");
}

TEST(RegistryFileReader, CostsNoMoreThanAFewTimesTheFile)
{
    const auto keyOf = [](std::size_t levels, std::size_t length)
    {
        std::string key = "[HKEY_CURRENT_USER";
        for (std::size_t i = 0; i < levels; ++i)
            key += '\\' + std::string(length, 'k');
        return key + "]\n";
    };
    EXPECT_TRUE(Read(Version5 + keyOf(512, 32)) == "!") << "the longest path has 16,383 characters";
    EXPECT_TRUE(Read(Version5 + keyOf(513, 1)) == "!");

    std::string deep = Version5, bad = Version5;
    for (int i = 0; i < 8; ++i)
        deep += keyOf(512, 30).insert(19, std::to_string(i));
    for (int i = 0; i < 100'000; ++i)
        bad += i % 2 ? "x\n" : "\"\n";
    for (const std::string& text : {deep, bad})
    {
        Key tree;
        TreeLoader loader{HKEY_CURRENT_USER, tree};
        const RegistryFileResult result = ReadRegistryFile(text, RegistryFileDialect::Hive, loader);
        EXPECT_LE(result.problems.size(), MaxProblems);
        EXPECT_LE(result.skipped.size(), 2 * text.size());
        EXPECT_LE(WriteRegistryFile(tree, "HKEY_CURRENT_USER", RegistryFileForm::Hive).size(), 2 * text.size());
    }
}

// ---- writing --------------------------------------------------------------------------------------------------------

TEST(RegistryFileWriter, WritesWhatWindowsExports)
{
    Key root;
    root.Create("b");
    Key& key = root.Create("A");
    key.SetValue("z\\\"", REG_SZ, "C:\\\"x\"\0"sv);
    key.SetValue("", REG_DWORD, "\x78\x56\x34\x12");
    key.SetValue("list", REG_MULTI_SZ, "x\0\xC3\xBC\0\0"sv);
    key.SetValue("tab", REG_SZ, "\t\0"sv);
    key.SetValue("nn", REG_BINARY, std::string(52, '\xAB'));

    const std::string expected = R"([HKEY_CURRENT_USER]

[HKEY_CURRENT_USER\A]
@=dword:12345678
"list"=hex(7):78,00,00,00,fc,00,00,00,00,00
"nn"=hex:ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,\
  ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,\
  ab,ab,ab,ab
"tab"=hex(1):09,00,00,00
"z\\\""="C:\\\"x\""

[HKEY_CURRENT_USER\b]

)";
    const std::string exported = WriteRegistryFile(root, "HKEY_CURRENT_USER", RegistryFileForm::Windows);
    EXPECT_EQ(exported.substr(0, 2), "\xFF\xFE");
    const std::string withCarriageReturns = std::regex_replace(Version5 + '\n' + expected, std::regex{"\n"}, "\r\n");
    EXPECT_EQ(FromUtf16Le(exported.substr(2)), withCarriageReturns);
}

/// As Recorder notes it.
std::string Described(const Key& key, const std::string& path)
{
    std::string notes = " [U:" + path + "]";
    for (const auto& [folded, value] : key.Values())
        notes += ' ' + Described(value.name, value.type, value.data);
    for (const auto& [folded, subKey] : key.SubKeys())
        notes += Described(subKey, path.empty() ? subKey.Name() : path + '\\' + subKey.Name());
    return notes;
}

/// A tree of names and data of odd pieces, which may begin and end within a character.
void Fill(Key& key, int levels, std::mt19937& random)
{
    static constexpr std::string_view odd =
        "aB]\"= ;#/@-[\\\t\x01\x7F\xFF\xC3\xBC\xEF\xBB\xBF\xF0\x9F\x98\x80\xE2\x80\xA8";
    static constexpr DWORD types[] = {0, 1, 1, 1, 2, 3, 4, 7, 11, 0xFFFFFFFF};
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    const auto text = [&below](std::size_t most)
    {
        std::string pieces;
        for (std::size_t i = below(most + 1); i > 0; --i)
            pieces += odd.substr(below(odd.size()), below(5) + 1);
        return pieces;
    };
    for (std::size_t i = below(12); i > 0; --i)
        key.SetValue(text(3), types[below(10)], text(below(8) == 0 ? 60 : 5).append(below(3), '\0'));
    for (std::size_t i = levels > 0 ? below(4) : 0; i > 0; --i)
    {
        std::string name = 'k' + text(3);
        std::erase(name, '\\'); // which separates keys
        Fill(key.Create(name), levels - 1, random);
    }
}

TEST(RegistryFileWriter, LosesNothing)
{
    for (unsigned seed = 0; seed < 200; ++seed)
    {
        Key odd;
        std::mt19937 random{seed};
        Fill(odd, 3, random);
        for (const RegistryFileForm form : {RegistryFileForm::Hive, RegistryFileForm::Windows})
        {
            const std::string text = WriteRegistryFile(odd, "HKEY_CURRENT_USER", form);
            Key read;
            TreeLoader loader{HKEY_CURRENT_USER, read};
            EXPECT_TRUE(ReadRegistryFile(text, RegistryFileDialect::Hive, loader).problems.empty());
            ASSERT_EQ(Described(read, ""), Described(odd, "")) << seed << '\n' << text;
        }
    }
}

} // namespace
