#include <algorithm>
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

namespace
{
using namespace Quenlor::StandIn::Registry;
using namespace std::string_literals;
using namespace std::string_view_literals;

const std::string Version5 = "Windows Registry Editor Version 5.00\n";

/// What a hive would hold then, on one line and with the short root "U", and an exclamation mark for each problem.
std::string Read(std::string_view text)
{
    Key tree;
    const RegistryFileResult result = ReadRegistryFile(text, HKEY_CURRENT_USER, tree);
    std::string written = WriteRegistryFile(tree, "U", RegistryFileForm::Hive).substr(Version5.size() + 1);
    std::replace(written.begin(), written.end(), '\n', ' ');
    return result.isRegistryFile ? written + std::string(result.problemCount, '!') : "not a registry file";
}

using Row = std::pair<std::string, std::string>; // a text and what is expected of it

// clang-format off
TEST(RegistryFileReader, ReadsFilesOfAnyFormAndKeyLines)
{
    const std::string name(255, 'n');
    std::string levels;
    for (int i = 0; i < 512; ++i)
        levels += "\\k";
    const Row rows[] = {
        {"regedit4\n[HKEY_CURRENT_USER]\n", "not a registry file"},
        {"REGEDIT4\n[HKEY_CURRENT_USER]\n\"a\"=hex(2):61", R"([U] "a"=hex(2):61,00  )"},
        {"\xEF\xBB\xBF" "REGEDIT4\n[HKEY_CURRENT_USER\\\xC3\xBC]\n", "[U\\\xC3\xBC]  "},
        {"\xFF\xFE" + ToUtf16Le("REGEDIT4\r\n[HKEY_CURRENT_USER\\\xF0\x9F\x98\x80]\r\n"), "[U\\\xF0\x9F\x98\x80]  "},
        {"REGEDIT4\r# c\n \t; c\n [HKEY_CURRENT_USER]\n\t\"a\"=\"\"\r\n\r\n\"b\"=\"\"", R"([U] "a"="" "b"=""  )"},
        {Version5 + "[hkey_Current_User\\\\a]b\\\"c/ \\] ; c\n[HKEY_Classes_Root\\B]", R"([U\a]b\"c/ ]  !)"},
        {Version5 + "[HKEY_CURRENT_USER\\a\\b]\n[-HKEY_CURRENT_USER\\A]\n@=\"\"\n[HKEY_CURRENT_USER\\c]", R"([U\c]  !)"},
        {Version5 + "[HKEY_CURRENT_USER\\a]\n[-HKEY_LOCAL_MACHINE\\a]\n[-HKEY_CURRENT_USER\\]", R"([U\a]  !!)"},
        {Version5 + "[HKEY_CURRENT_USER]\n[HKEY_NOWHERE]\n@=\"\"\n[HKEY_CURRENT_USER\\a\n@=\"\"", "[U]  !!!!"},
        {Version5 + "[HKEY_CURRENT_USER\\" + name + "]\n[HKEY_CURRENT_USER\\n" + name + "]", "[U\\" + name + "]  !"},
        {Version5 + "[HKEY_CURRENT_USER" + levels + "]\n[HKEY_CURRENT_USER" + levels + "\\k]", "[U" + levels + "]  !"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(Read(text), expected) << text;
}

TEST(RegistryFileReader, ReadsValueLines)
{
    const Row rows[] = {
        {"@=\"x\"\n\"\"=\"y\"", R"( @="y")"},
        {"\"a\" \t=\t \"x;# y\" \t; c", R"( "a"="x;# y")"},
        {R"("a\\b\"c"="d\\e\"f\n")", R"( "a\\b\"c"="d\\e\"fn")"},
        {"\"a\"=\"x\n\"a\"=\"x\\\"\n\"a\"=\"x\"y\n\"a\n\"a\"x=\"y\"\na=\"x\"\n\"a\"=x\n\"a\"=\"x\0y\""s, "!!!!!!!!"},
        {"\"a\"=\"\"\n\"b\"=\"\"\n\"A\"=- ; c\n\"b\"=-x", R"( "b"=""!)"},
        {"\"a\"=dword:1\n\"b\"=dword: 1234ABcd\t; c", R"( "a"=dword:00000001 "b"=dword:1234abcd)"},
        {"\"a\"=dword:\n\"a\"=dword:0x1\n\"a\"=dword:123456789\n\"a\"=dword:1 2", "!!!!"},
        {"\"a\"=hex:0,0a,FF, ; c\n\"b\"=hex(87654321):", R"( "a"=hex:00,0a,ff "b"=hex(87654321):)"},
        {"\"a\"=hex:100\n\"a\"=hex:,1\n\"a\"=hex:1 2\n\"a\"=hex:1,2g\n\"a\"=hex1\n\"a\"=hex():1", "!!!!!!"},
        {"\"a\"=hex:1,\\\n  2,\\ ; c\r\n\n ; c\n\t3\n\"b\"=hex:\\\n 1", R"( "a"=hex:01,02,03 "b"=hex:01)"},
        {"\"a\"=hex:1\\\n\"b\"=\"\"", R"( "b"=""!)"},
        {"\"a\"=hex:1,\\\n[HKEY_CURRENT_USER\\k]\n\"c\"=\"\"", "!!"},
        {"\"a\"=hex(1):61,00,00,00\n\"b\"=hex(7):fc,00\n\"c\"=hex(1):", R"( "a"="a" "b"=hex(7):fc,00 "c"=hex(1):)"},
        {"\"a\"=hex(1):80,dc,00,00", R"( "a"=hex(1):80,dc,00,00)"}, // a byte that is not UTF-8
    };
    for (const auto& [text, expected] : rows)
    {
        std::string read = Read(Version5 + "[HKEY_CURRENT_USER]\n" + text);
        EXPECT_EQ(read.erase(read.find("  "), 2), "[U]" + expected) << text;
    }
}
// clang-format on

TEST(RegistryFileReader, CostsNoMoreThanAFewTimesTheFile)
{
    std::string deep = Version5, bad = Version5;
    for (int i = 0; i < 20; ++i)
        deep += "[HKEY_CURRENT_USER\\" + std::to_string(i) +
                std::regex_replace(std::string(500, '.'), std::regex{"[.]"}, "\\k") + "]\n";
    for (int i = 0; i < 10'000; ++i)
        bad += "\"\n";
    for (const std::string& text : {deep, bad})
    {
        Key tree;
        const RegistryFileResult result = ReadRegistryFile(text, HKEY_CURRENT_USER, tree);
        EXPECT_LE(result.problems.size(), MaxProblems);
        EXPECT_LE(result.skipped.size(), 2 * text.size());
        EXPECT_LE(WriteRegistryFile(tree, "HKEY_CURRENT_USER", RegistryFileForm::Hive).size(), 2 * text.size());
    }
}

TEST(RegistryFileWriter, WritesWhatWindowsExports)
{
    Key root;
    root.Create("b");
    Key& key = root.Create("A");
    key.SetValue("z\\\"", REG_SZ, "C:\\\"x\"\0"sv);
    key.SetValue("", REG_DWORD, "\x78\x56\x34\x12");
    key.SetValue("list", REG_MULTI_SZ, "x\0\xC3\xBC\0\0"sv);
    key.SetValue("tab", REG_SZ, "\t\0"sv);
    key.SetValue("nn", REG_BINARY, std::string(26, '\xAB'));

    const std::string expected = R"([HKEY_CURRENT_USER]

[HKEY_CURRENT_USER\A]
@=dword:12345678
"list"=hex(7):78,00,00,00,fc,00,00,00,00,00
"nn"=hex:ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,\
  ab,ab,ab
"tab"=hex(1):09,00,00,00
"z\\\""="C:\\\"x\""

[HKEY_CURRENT_USER\b]

)";
    const std::string withCarriageReturns = std::regex_replace(Version5 + '\n' + expected, std::regex{"\n"}, "\r\n");
    EXPECT_EQ(WriteRegistryFile(root, "HKEY_CURRENT_USER", RegistryFileForm::Windows),
              "\xFF\xFE" + ToUtf16Le(withCarriageReturns));
}

TEST(RegistryFileWriter, LosesNothing)
{
    // Pieces may begin and end within a character.
    constexpr std::string_view odd = "aB]\"= ;#/@-[\\\t\x01\x7F\xFF\xC3\xBC\xEF\xBB\xBF\xF0\x9F\x98\x80\xE2\x80\xA8";
    constexpr DWORD types[] = {0, 1, 1, 1, 2, 3, 4, 7, 11, 0xFFFFFFFF};
    std::mt19937 random{22};
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    const auto text = [&](std::size_t most)
    {
        std::string pieces;
        for (std::size_t i = below(most + 1); i > 0; --i)
            pieces += odd.substr(below(odd.size()), below(5) + 1);
        return pieces;
    };
    for (int tries = 0; tries < 500; ++tries)
    {
        Key tree;
        for (std::size_t i = below(12); i > 0; --i)
            tree.Create(text(4)).SetValue(text(3), types[below(10)], text(below(8) ? 5 : 60).append(below(3), '\0'));
        for (const RegistryFileForm form : {RegistryFileForm::Hive, RegistryFileForm::Windows})
        {
            const std::string written = WriteRegistryFile(tree, "HKEY_CURRENT_USER", form);
            Key read;
            EXPECT_TRUE(ReadRegistryFile(written, HKEY_CURRENT_USER, read).problems.empty());
            ASSERT_TRUE(read == tree) << written;
        }
    }
}
} // namespace
