#include <array>
#include <cstddef>
#include <ostream>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "registry/RegistryFileReader.h"
#include "registry/RegistryFileWriter.h"
#include "registry/RegistryText.h"
#include "registry/RegistryTree.h"

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
        notes += notes.empty() ? note : ' ' + note;
        return true;
    }
};

/// What a file asks for, and one exclamation mark per problem.
std::string Read(std::string_view text, RegistryFileDialect dialect = RegistryFileDialect::Import)
{
    Recorder recorder;
    const RegistryFileResult result = ReadRegistryFile(text, dialect, recorder);
    if (!result.isRegistryFile)
        return "not a registry file";
    return recorder.notes + (result.problems.empty() ? "" : " ") + std::string(result.problems.size(), '!');
}

struct Row
{
    const char* name;
    std::string text;
    std::string expected;

    friend void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }
};

const auto NameOfRow = [](const ::testing::TestParamInfo<Row>& info) { return std::string{info.param.name}; };
const std::string Version5 = "Windows Registry Editor Version 5.00\n";
const std::string LongName(255, 'n');

// ---- reading --------------------------------------------------------------------------------------------------------

class RegistryFile : public ::testing::TestWithParam<Row>
{
};
class KeyLines : public ::testing::TestWithParam<Row>
{
};
class ValueLines : public ::testing::TestWithParam<Row>
{
};

TEST_P(RegistryFile, IsRead)
{
    EXPECT_EQ(Read(GetParam().text), GetParam().expected);
}

TEST_P(KeyLines, AreRead)
{
    EXPECT_EQ(Read(Version5 + GetParam().text), GetParam().expected);
}

TEST_P(ValueLines, AreRead)
{
    EXPECT_EQ(Read(Version5 + "[HKEY_CURRENT_USER]\n" + GetParam().text),
              GetParam().expected.empty() ? "[U:]" : "[U:] " + GetParam().expected);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(, RegistryFile, ::testing::Values(
    Row{"Version4",        "REGEDIT4\n[HKEY_CURRENT_USER]\n\"a\"=hex(2):61", R"([U:] a=2:a\00)"},
    Row{"Version5",        Version5 + "\n[HKEY_CURRENT_USER]\n", "[U:]"},
    Row{"HeaderInLower",   "regedit4\n[HKEY_CURRENT_USER]\n", "not a registry file"},
    Row{"HeaderAndBlank",  "REGEDIT4 \n[HKEY_CURRENT_USER]\n", "not a registry file"},
    Row{"Empty",           "", "not a registry file"},
    Row{"Utf8WithMark",    "\xEF\xBB\xBF" "REGEDIT4\n[HKEY_CURRENT_USER\\\xC3\xBC]\n", "[U:\xC3\xBC]"},
    Row{"Utf16",           "\xFF\xFE" + ToUtf16Le("REGEDIT4\r\n[HKEY_CURRENT_USER\\\xF0\x9F\x98\x80]\r\n"), "[U:\xF0\x9F\x98\x80]"},
    Row{"LineEnds",        "REGEDIT4\r[HKEY_CURRENT_USER]\n\"a\"=-\r\n\r\n\"b\"=-\r\"c\"=-", "[U:] a- b- c-"},
    Row{"CommentsAndBlanks", "REGEDIT4\n; c\n# c\n \t\n  ; c\n [HKEY_CURRENT_USER]\n\t\"a\"=-", "[U:] a-"}), NameOfRow);

INSTANTIATE_TEST_SUITE_P(, KeyLines, ::testing::Values(
    Row{"Roots",              "[hkey_local_machine\\A]\n[HKEY_Classes_Root\\B]", "[M:A] [C:B]"},
    Row{"OddNames",           "[HKEY_CURRENT_USER\\a]b\\\"c/ ]", "[U:a]b\\\"c/ ]"},
    Row{"Backslashes",        "[HKEY_CURRENT_USER\\\\a\\\\b\\\\]", "[U:a\\b]"},
    Row{"TextBehind",         "[HKEY_CURRENT_USER\\a] ; c", "[U:a]"},
    Row{"Deletion",           "[-HKEY_CURRENT_USER\\a]\n\"ignored\"=-\n[HKEY_CURRENT_USER]\n\"x\"=-", "[-U:a] [U:] x- !"},
    Row{"DeletionOfARoot",    "[-HKEY_CURRENT_USER]\n[-HKEY_CURRENT_USER\\]", " !!"},
    Row{"UnknownRoot",        "[HKEY_CURRENT_USER]\n[HKEY_NOWHERE\\a]\n\"ignored\"=-\n[HKEY_CURRENT_USER\\b]", "[U:] [U:b] !!"},
    Row{"BlankBeforeTheRoot", "[ HKEY_CURRENT_USER]", " !"},
    Row{"NoClosingBracket",   "[HKEY_CURRENT_USER]\n[HKEY_CURRENT_USER\\a\n\"ignored\"=-", "[U:] !!"},
    Row{"NoKey",              "\"ignored\"=-", " !"},
    Row{"LongestName",        "[HKEY_CURRENT_USER\\" + LongName + "]", "[U:" + LongName + "]"},
    Row{"TooLongName",        "[HKEY_CURRENT_USER\\" + LongName + "n]", " !"}), NameOfRow);

INSTANTIATE_TEST_SUITE_P(, ValueLines, ::testing::Values(
    Row{"DefaultValue",      "@=\"x\"\n\"\"=\"y\"", R"(=1:x\00 =1:y\00)"},
    Row{"BlanksAndComment",  "\"a\" \t=\t \"x;# y\" \t; c", R"(a=1:x;#\20y\00)"},
    Row{"Escapes",           R"("a\\b\"c"="d\\e\"f\n")", R"(a\b"c=1:d\e"fn\00)"},
    Row{"MalformedText",     "\"a\"=\"x\n\"a\"=\"x\\\"\n\"a\"=\"x\"y\n\"a\n\"a\"x=\"y\"\na=\"x\"\n\"a\"=\n\"a\"=x", "!!!!!!!!"},
    Row{"NulCharacter",      "\"a\"=\"x\0y\"\n\"b\"=-"s, "b- !"},
    Row{"Deletion",          "\"a\"=- ; c\n\"a\"=-x", "a- !"},
    Row{"Number",            "\"a\"=dword:1\n\"b\"=dword: 1234ABcd\t; c", R"(a=4:\01\00\00\00 b=4:\CD\AB4\12)"},
    Row{"MalformedNumber",   "\"a\"=dword:\n\"a\"=dword:0x1\n\"a\"=dword:123456789\n\"a\"=dword:1 2", "!!!!"},
    Row{"Hex",               "\"a\"=hex:0,0a,FF\n\"b\"=hex:\n\"c\"=hex:1, ; c", R"(a=3:\00\0A\FF b=3: c=3:\01)"},
    Row{"MalformedHex",      "\"a\"=hex:100\n\"a\"=hex:1,,2\n\"a\"=hex:,1\n\"a\"=hex:1 2\n\"a\"=hex:1,2g\n\"a\"=hex1", "!!!!!!"},
    Row{"HexTypes",          "\"a\"=hex(0):1\n\"b\"=hex(B):2\n\"c\"=hex(87654321):\n\"d\"=hex(4):1", R"(a=0:\01 b=11:\02 c=2271560481: d=4:\01)"},
    Row{"MalformedTypes",    "\"a\"=hex():1\n\"a\"=hex(123456789):1\n\"a\"=hex(1:1\n\"a\"=hex(1)1", "!!!!"},
    Row{"Continuation",      "\"a\"=hex:1,\\\n  2,\\ ; c\r\n\n ; c\n\t3\n\"b\"=hex:\\\n 1", R"(a=3:\01\02\03 b=3:\01)"},
    Row{"NoCommaToContinue", "\"a\"=hex:1\\\n\"b\"=-", "b- !"},
    Row{"NothingToContinue", "\"a\"=hex:1,\\\n\"b\"=-\n\"c\"=-", "c- !"},
    Row{"KeyToContinue",     "\"a\"=hex:1,\\\n[HKEY_CURRENT_USER\\k]\n\"c\"=-", "!!"},
    Row{"EndToContinue",     "\"a\"=hex:1,\\\n\n", R"(a=3:\01)"},
    Row{"SpoiltLater",       "\"a\"=hex:1,\\\n2,x\n\"b\"=-", "b- !"},
    Row{"HexText",           "\"a\"=hex(1):61,00,fc,00\n\"b\"=hex(2):61,00,00,00\n\"c\"=hex(7):61,00,00,00,62,00\n\"d\"=hex(1):",
                             R"(a=1:a\C3\BC\00 b=2:a\00 c=7:a\00b\00 d=1:)"},
    Row{"Surrogates",        "\"a\"=hex(1):3d,d8,00,de,00,d8,61,00,80,dc", R"(a=1:\F0\9F\98\80\EF\BF\BDa\80\00)"}), NameOfRow);
// clang-format on

TEST(RegistryFileReader, AddsNoNulToTheTextOfAHive)
{
    const std::string file = Version5 + "[HKEY_CURRENT_USER]\n\"a\"=hex(1):61,00\n\"b\"=hex(7):62,00\n\"c\"=\"d\"";
    EXPECT_EQ(Read(file, RegistryFileDialect::Hive), R"([U:] a=1:a b=7:b c=1:d\00)");
}

TEST(RegistryFileReader, TellsWhereProblemsAre)
{
    Recorder recorder;
    const auto& problems =
        ReadRegistryFile(Version5 + "\n[HKEY_CURRENT_USER]\r\n\"a\"=hex:1,\\\r\n  2,x\r\n \"b\"=?\r\n\"c\"=-",
                         RegistryFileDialect::Hive, recorder)
            .problems;
    ASSERT_EQ(problems.size(), 2U);
    EXPECT_EQ(problems[0].line, 4U);
    EXPECT_EQ(problems[0].text, "\"a\"=hex:1,\\\r\n  2,x");
    EXPECT_EQ(problems[0].reason, "malformed hexadecimal data");
    EXPECT_EQ(problems[1].line, 6U);
    EXPECT_EQ(problems[1].text, " \"b\"=?");
}

// ---- writing --------------------------------------------------------------------------------------------------------

TEST(RegistryFileWriter, WritesWhatWindowsExports)
{
    Key root;
    root.Create(R"(b\Sub)");
    Key& key = root.Create(R"(A)");
    key.SetValue("z\\\"", REG_SZ, "C:\\\"x\"\0"sv);
    key.SetValue("", REG_DWORD, "\x78\x56\x34\x12");
    key.SetValue("list", REG_MULTI_SZ, "x\0\xC3\xBC\0\0"sv);
    key.SetValue("empty", REG_SZ, "");
    key.SetValue("tab", REG_SZ, "\t\0"sv);
    key.SetValue("short", REG_DWORD, "\x01"sv);
    key.SetValue("none", REG_NONE, "");
    key.SetValue("nn", REG_BINARY, std::string(52, '\xAB'));

    const std::string expected =
        "Windows Registry Editor Version 5.00\r\n"
        "\r\n"
        "[HKEY_CURRENT_USER]\r\n"
        "\r\n"
        "[HKEY_CURRENT_USER\\A]\r\n"
        "\"z\\\\\\\"\"=\"C:\\\\\\\"x\\\"\"\r\n"
        "@=dword:12345678\r\n"
        "\"list\"=hex(7):78,00,00,00,fc,00,00,00,00,00\r\n"
        "\"empty\"=hex(1):\r\n"
        "\"tab\"=hex(1):09,00,00,00\r\n"
        "\"short\"=hex(4):01\r\n"
        "\"none\"=hex(0):\r\n"
        "\"nn\"=hex:ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,\\\r\n"
        "  ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,\\\r\n"
        "  ab,ab,ab,ab\r\n"
        "\r\n"
        "[HKEY_CURRENT_USER\\b]\r\n"
        "\r\n"
        "[HKEY_CURRENT_USER\\b\\Sub]\r\n"
        "\r\n";
    const std::string exported = WriteRegistryFile(root, "HKEY_CURRENT_USER", RegistryFileForm::Windows);
    EXPECT_EQ(exported.substr(0, 2), "\xFF\xFE");
    EXPECT_EQ(FromUtf16Le(exported.substr(2)), expected);
}

/// Builds the tree that a file describes.
class Builder final : public RegistryFileHandler
{
public:
    bool BeginKey(HKEY, std::string_view path) override
    {
        m_key = &tree.Create(path);
        return true;
    }
    bool DeleteKey(HKEY, std::string_view) override { return false; }
    void SetValue(std::string_view name, DWORD type, std::string_view data) override
    {
        m_key->SetValue(name, type, data);
    }
    void DeleteValue(std::string_view) override {}

    Key tree;

private:
    Key* m_key = nullptr;
};

std::string Described(const Key& key)
{
    std::string text = '[' + key.Name() + "\n";
    for (const auto& value : key.Values())
        text += Described(value->name, value->type, value->data) + '\n';
    for (const auto& subKey : key.SubKeys())
        text += Described(*subKey);
    return text + "]\n";
}

class OddTree final
{
public:
    explicit OddTree(unsigned seed) : m_random{seed} { Fill(tree, 3); }

    Key tree;

private:
    void Fill(Key& key, int levels)
    {
        for (int i = Below(12); i > 0; --i)
            key.SetValue(Below(8) == 0 ? "" : Name() + (Below(4) == 0 ? "\\" : ""), Type(), Data());
        for (int i = levels > 0 ? Below(4) : 0; i > 0; --i)
            Fill(key.Create(Name()), levels - 1);
    }

    std::string Name()
    {
        static constexpr std::array pieces{"a",
                                           "B",
                                           "]",
                                           "\"",
                                           "=",
                                           " ",
                                           ";",
                                           "#",
                                           "/",
                                           "@",
                                           "-",
                                           "[",
                                           "\t",
                                           "\x01",
                                           "\x7F",
                                           "\xFF",
                                           "\xC3",
                                           "\xC3\xBC",
                                           "\xEF\xBB\xBF",
                                           "\xF0\x9F\x98\x80",
                                           "\xE2\x80\xA8"};
        std::string name;
        for (int i = Below(5); i >= 0; --i)
            name += pieces[static_cast<std::size_t>(Below(pieces.size()))];
        return name;
    }

    DWORD Type()
    {
        static constexpr std::array<DWORD, 10> types{0, 1, 1, 1, 2, 3, 4, 7, 11, 0xFFFFFFFF};
        return types[static_cast<std::size_t>(Below(types.size()))];
    }

    std::string Data()
    {
        std::string data;
        for (int i = Below(Below(8) == 0 ? 60 : 5); i > 0; --i)
        {
            switch (Below(4))
            {
            case 0:
                data += static_cast<char>(Below(256));
                break;
            case 1:
                data += '\0';
                break;
            default:
                data += Name();
            }
        }
        return Below(2) == 0 ? data : data + '\0';
    }

    int Below(std::size_t limit) { return static_cast<int>(m_random() % limit); }

    std::mt19937 m_random;
};

TEST(RegistryFileWriter, LosesNothing)
{
    for (unsigned seed = 0; seed < 200; ++seed)
    {
        const OddTree odd{seed};
        for (const RegistryFileForm form : {RegistryFileForm::Hive, RegistryFileForm::Windows})
        {
            const std::string text = WriteRegistryFile(odd.tree, "HKEY_CURRENT_USER", form);
            Builder builder;
            EXPECT_TRUE(ReadRegistryFile(text, RegistryFileDialect::Hive, builder).problems.empty());
            ASSERT_EQ(Described(builder.tree), Described(odd.tree)) << "seed " << seed << '\n' << text;
            EXPECT_EQ(WriteRegistryFile(builder.tree, "HKEY_CURRENT_USER", form), text);
        }
    }
}

TEST(RegistryTree, KeepsValuesInTheOrderOfTheirCreation)
{
    Key key;
    for (const char* const name : {"b", "a", "d", "c"})
        key.SetValue(name, REG_NONE, "");
    EXPECT_TRUE(key.DeleteValue("A"));
    EXPECT_FALSE(key.DeleteValue("a"));
    key.SetValue("D", REG_BINARY, "changed");
    key.SetValue("A", REG_NONE, "");
    EXPECT_EQ(Described(key), "[\nb=0:\nd=3:changed\nc=0:\nA=0:\n]\n");
}
} // namespace
