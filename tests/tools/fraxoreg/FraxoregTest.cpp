#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <vector>

#include "FraxoReg.h"
#include "support/ScratchMachine.h"

// What the tool stores is read with the registry functions, and what it prints is compared letter for letter, because
// scripts read it.

namespace
{
using namespace std::string_literals;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr char Sample[] = R"(Software\Sample)";
constexpr char SampleName[] = R"(HKCU\Software\Sample)";
constexpr char Done[] = "The operation completed successfully.\n";
constexpr char Canceled[] = "The operation was canceled by the user.\n";
constexpr char NotFound[] = "ERROR: The system was unable to find the specified registry key or value.\n";

struct Outcome
{
    int status = 0;
    std::string out;
    std::string err;
};

class FraxoRegTest : public ::testing::Test
{
protected:
    Outcome Do(const std::vector<std::string>& arguments, const std::string& input = {}, bool isTerminal = false) const
    {
        std::istringstream in{input};
        std::ostringstream out;
        std::ostringstream err;
        const int status = FraxoReg::Run(arguments, {in, out, err, isTerminal, isTerminal});
        return {status, out.str(), err.str()};
    }

    void Expect(const std::vector<std::string>& arguments, const std::string& out) const
    {
        const Outcome outcome = Do(arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out, out);
        EXPECT_THAT(outcome.err, IsEmpty());
    }

    void ExpectFailure(const std::vector<std::string>& arguments, const std::string& err) const
    {
        const Outcome outcome = Do(arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.out, IsEmpty());
        EXPECT_EQ(outcome.err, err);
    }

    std::string Write(const char* name, const std::string& text) const
    {
        std::string path = PathOf(name);
        std::ofstream{path, std::ios::binary} << text;
        return path;
    }

    std::string Read(const char* name) const
    {
        std::ifstream file{PathOf(name), std::ios::binary};
        return {std::istreambuf_iterator<char>{file}, {}};
    }

    std::string PathOf(const char* name) const { return (m_machine.Root() / name).string(); }

    std::string TextAt(HKEY root, const char* subKey, const char* name) const
    {
        const std::optional<StoredValue> value = m_machine.ReadData(root, subKey, name);
        return value ? value->bytes.c_str() : "(none)";
    }

    ScratchMachine m_machine{ScratchMachine::ClassesRoot::Merged};
};

// ---- query ---------------------------------------------------------------------------------------------------------

class Query : public FraxoRegTest
{
protected:
    void SetUp() override
    {
        m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", "two words");
        m_machine.WriteNumber(HKEY_CURRENT_USER, Sample, "Count", 456);
        m_machine.WriteData(HKEY_CURRENT_USER, Sample, "Big", REG_QWORD, "\xFF\xFF\xFF\xFF\x1F\0\0\0"s);
        m_machine.WriteData(HKEY_CURRENT_USER, Sample, "Bytes", REG_BINARY, "\x0A\xBC\0"s);
        m_machine.WriteData(HKEY_CURRENT_USER, Sample, "List", REG_MULTI_SZ, "one\0two\0\0"s);
        m_machine.WriteData(HKEY_CURRENT_USER, Sample, "Path", REG_EXPAND_SZ, "%HOME%\0"s);
        m_machine.WriteData(HKEY_CURRENT_USER, Sample, "Short", REG_DWORD, "\x01\x02"s);
        m_machine.WriteData(HKEY_CURRENT_USER, Sample, "Odd", 0x20, "\x01"s);
        m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Sample\Part\Inner)", "", "the default");
        m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Sample\Zoo)", "name", "TWO");
    }
};

TEST_F(Query, ShowsAKeyAsWindowsDoes)
{
    Expect({"QUERY", R"(hkey_current_user\SOFTWARE\Sample\)"}, R"(
HKEY_CURRENT_USER\SOFTWARE\Sample
    Name    REG_SZ    two words
    Count    REG_DWORD    0x1c8
    Big    REG_QWORD    0x1fffffffff
    Bytes    REG_BINARY    0ABC00
    List    REG_MULTI_SZ    one\0two
    Path    REG_EXPAND_SZ    %HOME%
    Short    REG_DWORD    0102
    Odd    0x20    01

HKEY_CURRENT_USER\SOFTWARE\Sample\Part
HKEY_CURRENT_USER\SOFTWARE\Sample\Zoo
)");
    Expect({"query", R"(HKCU\Software\Sample\Part)", "/S"}, R"(
HKEY_CURRENT_USER\Software\Sample\Part\Inner
    (Default)    REG_SZ    the default

)");
    Expect({"query", R"(HKCU\Software)", "/reg:32"}, "\nHKEY_CURRENT_USER\\Software\\Sample\n");
    Expect({"query", "HKLM"}, "\n");
}

TEST_F(Query, ShowsOneValue)
{
    const std::string block = "\nHKEY_CURRENT_USER\\Software\\Sample\n    ";
    Expect({"query", SampleName, "/v", "NAME"}, block + "Name    REG_SZ    two words\n\n");
    Expect({"query", SampleName, "-v", "List", "--se", "#", "/z"}, block + "List    REG_MULTI_SZ (7)    one#two\n\n");
    Expect({"query", SampleName, "/ve"}, block + "(Default)    REG_SZ    (value not set)\n\n");
    ExpectFailure({"query", SampleName, "/v", "Missing"}, NotFound);
    ExpectFailure({"query", R"(HKCU\Software\Missing)", "/ve"}, NotFound);
}

struct Search
{
    std::vector<std::string> arguments;
    int matchCount;
    std::string_view found; // ~ stands for the name of the sample key
};

TEST_F(Query, FindsWhatTheSwitchesSay)
{
    const Search searches[] = {
        {{"/f", "two"}, 2, "~\n    Name    REG_SZ    two words\n    List    REG_MULTI_SZ    one\\0two\n\n"},
        {{"/f", "two", "/e", "/s"}, 1, "~\\Zoo\n    name    REG_SZ    TWO\n\n"},
        {{"/f", "TWO", "/c", "/s"}, 1, "~\\Zoo\n    name    REG_SZ    TWO\n\n"},
        {{"/f", "n?me", "/v", "/e", "/s"},
         2,
         "~\n    Name    REG_SZ    two words\n\n~\\Zoo\n    name    REG_SZ    TWO\n\n"},
        {{"/f", "art"}, 1, "~\\Part\n"},
        {{"/f", "n*r", "/k", "/s"}, 1, "~\\Part\\Inner\n"},
        {{"/f", "o", "/k", "/d", "/t", "REG_SZ"}, 2, "~\n    Name    REG_SZ    two words\n\n~\\Zoo\n"},
        {{"/f", "0ab", "/d", "/t", "reg_binary", "/s"}, 1, "~\n    Bytes    REG_BINARY    0ABC00\n\n"},
        {{"/t", "REG_QWORD"}, 1, "~\n    Big    REG_QWORD    0x1fffffffff\n\n"},
        {{"/s", "/v", "name"}, 2, "~\n    Name    REG_SZ    two words\n\n~\\Zoo\n    name    REG_SZ    TWO\n\n"},
        {{"/s", "/ve"}, 1, "~\\Part\\Inner\n    (Default)    REG_SZ    the default\n\n"},
        {{"/s", "/v", "name", "/f", "wo*s"}, 1, "~\n    Name    REG_SZ    two words\n\n"},
    };
    for (const Search& search : searches)
    {
        SCOPED_TRACE(::testing::PrintToString(search.arguments));
        std::vector<std::string> arguments{"query", SampleName};
        arguments.insert(arguments.end(), search.arguments.begin(), search.arguments.end());
        std::string expected = "\n";
        for (const char character : search.found)
            expected += character == '~' ? R"(HKEY_CURRENT_USER\Software\Sample)" : std::string{character};
        Expect(arguments, expected + "End of search: " + std::to_string(search.matchCount) + " match(es) found.\n");
    }
    const Outcome nothing = Do({"query", SampleName, "/s", "/f", "nowhere"});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_EQ(nothing.out, "\nEnd of search: 0 match(es) found.\n");
    EXPECT_THAT(nothing.err, IsEmpty());
}

TEST_F(Query, IgnoresLetterCaseBeyondAsciiAndTakesCharactersForOne)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample,
                        "Gr\xC3\xB6\xC3\x9F"
                        "e",
                        "x");
    EXPECT_EQ(Do({"query", SampleName, "/v", "/e", "/f", "GR\xC3\x96?E"}).status, 0);
    EXPECT_EQ(Do({"query", SampleName, "/v", "/e", "/c", "/f", "GR\xC3\x96?E"}).status, 1);
}

TEST_F(Query, ShowsControlCharactersToATerminalAsText)
{
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Sample\Zoo)", "name", "a\x1B[2J\xC2\x9B\xC3\x9Bz");
    const std::vector<std::string> query{"query", R"(HKCU\Software\Sample\Zoo)", "/v", "name"};
    EXPECT_THAT(Do(query, "", true).out, HasSubstr("    a\\x1b[2J\\x9b\xC3\x9Bz\n"));
    EXPECT_THAT(Do(query).out, HasSubstr("    a\x1B[2J\xC2\x9B\xC3\x9Bz\n"));
}

TEST_F(Query, SaysThatMalformedLinesOfTheHiveAreNotShown)
{
    const std::string hive = Write("Registry/HKEY_CURRENT_USER.reg",
                                   "Windows Registry Editor Version 5.00\n[HKEY_CURRENT_USER\\Software]\n\"a\"=oops\n");
    const Outcome outcome = Do({"query", R"(HKCU\Software)"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, AllOf(StartsWith("WARNING: "), HasSubstr(hive), HasSubstr("line 3: ")));
}

// ---- add -----------------------------------------------------------------------------------------------------------

using Add = FraxoRegTest;

TEST_F(Add, MakesKeysWithTheirLevelsInAnySpelling)
{
    for (const char* const name :
         {R"(HKCU\Software\Sample)", R"(hkey_current_user\a\\B\)", R"(hklm\c)", R"(HKEY_Classes_Root\.sample)"})
        Expect({"add", name}, Done);
    EXPECT_TRUE(m_machine.HasKey(HKEY_CURRENT_USER, Sample));
    EXPECT_TRUE(m_machine.HasKey(HKEY_CURRENT_USER, R"(a\b)"));
    EXPECT_TRUE(m_machine.HasKey(HKEY_LOCAL_MACHINE, "c"));
    EXPECT_TRUE(m_machine.HasKey(HKEY_LOCAL_MACHINE, R"(Software\Classes\.sample)"));
    EXPECT_FALSE(m_machine.ReadData(HKEY_CURRENT_USER, Sample, "")) << "a key alone gets no value";
}

struct Stored
{
    std::vector<std::string> arguments;
    DWORD type;
    std::string bytes;
};

TEST_F(Add, StoresDataAsWindowsDoes)
{
    constexpr DWORD bigEndian = 5;
    const Stored rows[] = {
        {{"/d", "text"}, REG_SZ, "text\0"s},
        {{"/ve"}, REG_SZ, "\0"s},
        {{"/t", "REG_SZ"}, REG_SZ, "\0"s},
        {{"/d", "/usr/bin"}, REG_SZ, "/usr/bin\0"s},
        {{"/d", "/f"}, REG_SZ, "/f\0"s},
        {{"/d", "a\nb", "/t", "reg_expand_sz"}, REG_EXPAND_SZ, "a\nb\0"s},
        {{"-D", "456", "-T", "REG_DWORD"}, REG_DWORD, "\xC8\x01\0\0"s},
        {{"/d", "0123", "/t", "REG_DWORD_LITTLE_ENDIAN"}, REG_DWORD, "\x7B\0\0\0"s},
        {{"/d", "456", "/t", "REG_DWORD_BIG_ENDIAN"}, bigEndian, "\xC8\x01\0\0"s}, // Windows does not turn it either
        {{"/d", "0XfFffFFFF", "/t", "REG_DWORD"}, REG_DWORD, "\xFF\xFF\xFF\xFF"},
        {{"/d", "18446744073709551615", "/t", "REG_QWORD"}, REG_QWORD, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"},
        {{"/d", "abcde", "/t", "REG_BINARY"}, REG_BINARY, "\x0A\xBC\xDE"},
        {{"/t", "REG_BINARY"}, REG_BINARY, ""},
        {{"/d", "ab", "/t", "REG_NONE"}, REG_NONE, "a\0b\0\0\0"s},
        {{"/d", R"(a\0b)", "/t", "REG_MULTI_SZ"}, REG_MULTI_SZ, "a\0b\0\0"s},
        {{"/d", "a,b,", "/s", ",", "/t", "REG_MULTI_SZ"}, REG_MULTI_SZ, "a\0b\0\0"s},
        {{"/d", "a", "/s", "\xC3\xA9", "/t", "REG_MULTI_SZ"}, REG_MULTI_SZ, "a\0\0"s},
        {{"/d", ",", "/s", ",", "/t", "REG_MULTI_SZ"}, REG_MULTI_SZ, "\0"s},
        {{"/t", "REG_MULTI_SZ"}, REG_MULTI_SZ, "\0"s},
    };
    for (const Stored& row : rows)
    {
        SCOPED_TRACE(::testing::PrintToString(row.arguments));
        std::vector<std::string> arguments{"ADD", SampleName, "/F"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        Expect(arguments, Done);
        EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, Sample, ""), (StoredValue{row.type, row.bytes}));
    }
}

struct Answer
{
    const char* input;
    const char* stored;
};

TEST_F(Add, AsksBeforeItOverwrites)
{
    const std::vector<std::string> add{"add", SampleName, "/v", "Name", "/d", "new"};
    for (const Answer& answer : {Answer{"y\n", "new"}, Answer{"YES\r\n", "new"}, Answer{"what\n\nyes", "new"},
                                 Answer{"No\n", "old"}, Answer{"n", "old"}, Answer{"", "old"}})
    {
        SCOPED_TRACE(answer.input);
        m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", "old");
        const Outcome outcome = Do(add, answer.input);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.out, StartsWith("Value Name exists, overwrite(Yes/No)? "));
        EXPECT_TRUE(outcome.out.ends_with(answer.stored == "new"s ? Done : Canceled)) << outcome.out;
        EXPECT_EQ(TextAt(HKEY_CURRENT_USER, Sample, "Name"), answer.stored);
    }
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "", "old");
    EXPECT_EQ(Do({"add", SampleName, "/ve", "/d", "new"}).out,
              "Value (Default) exists, overwrite(Yes/No)? \n"s + Canceled);
    Expect({"add", SampleName}, Done); // nothing to overwrite
}

TEST_F(Add, SaysWhatTheSystemRefuses)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", "old");
    m_machine.WhileReadOnly(HKEY_CURRENT_USER, Sample,
                            [&]
                            {
                                const Outcome outcome = Do({"add", SampleName, "/v", "Name", "/d", "new", "/f"});
                                EXPECT_EQ(outcome.status, 1);
                                EXPECT_THAT(outcome.err, AllOf(StartsWith("ERROR: Error accessing the registry.\n"),
                                                               HasSubstr("HKEY_CURRENT_USER.reg")));
                            });
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, Sample, "Name"), "old");
}

// ---- delete --------------------------------------------------------------------------------------------------------

class Delete : public FraxoRegTest
{
protected:
    void SetUp() override
    {
        for (const char* const name : {"", "Name", "Other"})
            m_machine.WriteText(HKEY_CURRENT_USER, Sample, name, "text");
        m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Sample\Part)", "Name", "text");
    }
};

TEST_F(Delete, TakesAValueAllValuesOrTheKey)
{
    Expect({"delete", SampleName, "/v", "NAME", "/f"}, Done);
    EXPECT_FALSE(m_machine.ReadData(HKEY_CURRENT_USER, Sample, "Name"));
    Expect({"delete", SampleName, "/ve", "/f"}, Done);
    EXPECT_FALSE(m_machine.ReadData(HKEY_CURRENT_USER, Sample, ""));
    EXPECT_TRUE(m_machine.ReadData(HKEY_CURRENT_USER, Sample, "Other"));
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Third", "text");
    Expect({"delete", SampleName, "/va", "/f"}, Done);
    Expect({"query", SampleName}, "\nHKEY_CURRENT_USER\\Software\\Sample\\Part\n");
    Expect({"delete", SampleName, "/f"}, Done);
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, Sample));
    EXPECT_TRUE(m_machine.HasKey(HKEY_CURRENT_USER, "Software"));
}

TEST_F(Delete, AsksFirst)
{
    const struct
    {
        std::vector<std::string> arguments;
        std::string question;
    } rows[] = {
        {{"/v", "Name"}, "Permanently delete the registry value Name (Yes/No)? "},
        {{"/ve"}, "Permanently delete the registry value (Default) (Yes/No)? "},
        {{"/va"}, R"(Delete all values under the registry key HKEY_CURRENT_USER\Software\Sample (Yes/No)? )"},
        {{}, R"(Permanently delete the registry key HKEY_CURRENT_USER\Software\Sample (Yes/No)? )"},
    };
    for (const auto& row : rows)
    {
        std::vector<std::string> arguments{"delete", SampleName};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const Outcome refused = Do(arguments, "no\n");
        EXPECT_EQ(refused.status, 0);
        EXPECT_EQ(refused.out, row.question + Canceled);
        EXPECT_TRUE(m_machine.ReadData(HKEY_CURRENT_USER, Sample, "Name")) << row.question;
    }
    EXPECT_EQ(Do({"delete", SampleName}, "yes\n").status, 0);
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, Sample));
}

TEST_F(Delete, SaysWhatIsMissingWithoutAQuestion)
{
    ExpectFailure({"delete", SampleName, "/v", "Missing"}, NotFound);
    ExpectFailure({"delete", R"(HKCU\Software\Sample\Part)", "/ve", "/f"}, NotFound);
    ExpectFailure({"delete", R"(HKCU\Software\Missing)", "/va"}, NotFound);
    ExpectFailure({"delete", R"(HKCU\Software\Missing)"}, NotFound);
    ExpectFailure({"delete", "HKCU", "/f"}, "ERROR: A root key cannot be deleted.\n");
    EXPECT_TRUE(m_machine.HasKey(HKEY_CURRENT_USER, Sample));
}

// ---- wrong use -----------------------------------------------------------------------------------------------------

using WrongUse = FraxoRegTest;

TEST_F(WrongUse, IsRefusedAsOnWindowsAndChangesNothing)
{
    const struct
    {
        std::vector<std::string> arguments;
        std::string message; // `ERROR: ` before it and a line's end behind it
        std::string helpOf;  // with a blank at its end
    } rows[] = {
        {{}, "Invalid syntax.", ""},
        {{"copy", "HKCU"}, "Invalid syntax.", ""},
        {{"query"}, "Invalid syntax.", "QUERY "},
        {{"query", R"(HKXX\a)"}, "Invalid key name.", "QUERY "},
        {{"query", "HKCUSoftware"}, "Invalid key name.", "QUERY "},
        {{"query", R"(HKEY_USERS\a)"}, "Invalid key name.", "QUERY "},
        {{"query", R"(\\machine\HKLM\a)"}, "Invalid key name.", "QUERY "},
        {{"query", ""}, "Invalid key name.", "QUERY "},
        {{"query", "HKCU", "/x"}, "Invalid syntax. '/x' is not expected here.", "QUERY "},
        {{"query", "HKCU", "/s", "/S"}, "Invalid syntax. '/s' option is not allowed more than '1' time(s).", "QUERY "},
        {{"query", "HKCU", "/v"}, "Invalid syntax. Value expected for '/v'.", "QUERY "},
        {{"query", "HKCU", "/v", "a", "/ve"}, "Invalid syntax.", "QUERY "},
        {{"query", "HKCU", "/k"}, "Invalid syntax. '/k' needs '/f'.", "QUERY "},
        {{"query", "HKCU", "/se", "ab"}, "Invalid syntax. Specify one character for '/se'.", "QUERY "},
        {{"query", "HKCU", "/t", "REG_TEXT"}, "Invalid syntax. Specify valid type for '/t'.", "QUERY "},
        {{"query", "HKCU", "/reg:32", "/reg:64"}, "Invalid syntax.", "QUERY "},
        {{"add", R"(HKCU\)" + std::string(256, 'x')}, "Invalid key name.", "ADD "},
        {{"add", "HKCU\\a\nb"}, "Invalid key name.", "ADD "},
        {{"add", "HKCU", "/v", std::string(16384, 'x')}, "Invalid syntax. Specify valid value name for '/v'.", "ADD "},
        {{"add", "HKCU", "/v", "a", "/t", "REG_LINK"}, "Invalid syntax. Specify valid type for '/t'.", "ADD "},
        {{"add", "HKCU", "/d"}, "Invalid syntax. Value expected for '/d'.", "ADD "},
        {{"add", "HKCU", "/ve", "/t", "REG_MULTI_SZ", "/s", "", "/d", "a"},
         "Invalid syntax. Specify one character for '/s'.",
         "ADD "},
        {{"delete", "HKCU", "/va", "/ve"}, "Invalid syntax.", "DELETE "},
        {{"import"}, "Invalid syntax.", "IMPORT "},
        {{"import", "a", "b"}, "Invalid syntax. 'b' is not expected here.", "IMPORT "},
        {{"export", "HKCU"}, "Invalid syntax.", "EXPORT "},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(::testing::PrintToString(row.arguments));
        const Outcome outcome = Do(row.arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.out, IsEmpty());
        EXPECT_THAT(outcome.err,
                    StartsWith("ERROR: " + row.message + "\nType \"fraxoreg " + row.helpOf + "/?\" for usage.\n"));
    }
    EXPECT_THAT(Do({"query", "HKCUSoftware"}).err,
                HasSubstr(R"('HKCU\Software')")); // what a shell makes of it unquoted
    EXPECT_FALSE(std::filesystem::exists(m_machine.Root() / "Registry"));
}

TEST_F(WrongUse, OfDataIsRefused)
{
    const struct
    {
        const char* type;
        std::vector<const char*> data;
        const char* message;
    } rows[] = {
        {"REG_DWORD", {"", "1x", "-1", "+1", " 1", "0x", "0xg", "4294967296"}, "Specify valid numeric value for '/d'."},
        {"REG_QWORD", {"18446744073709551616", "0x12345678123456781"}, "Specify valid numeric value for '/d'."},
        {"REG_BINARY", {"0x12", "1g", "g", "12 34"}, "Specify valid hexadecimal digits for '/d'."},
        {"REG_MULTI_SZ", {R"(\0a)", R"(a\0\0b)", R"(a\0\0)", R"(\0\0)"}, "Specify no empty string within '/d'."},
    };
    for (const auto& row : rows)
    {
        for (const char* const data : row.data)
        {
            ExpectFailure({"add", SampleName, "/t", row.type, "/d", data},
                          "ERROR: Invalid syntax. "s + row.message + "\nType \"fraxoreg ADD /?\" for usage.\n");
        }
    }
    EXPECT_EQ(Do({"add", SampleName, "/t", "REG_DWORD"}).status, 1);
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, Sample));
}

TEST_F(WrongUse, IsHelped)
{
    EXPECT_EQ(Do({"/?"}).out, Do({"--help"}).out);
    for (const char* const verb : {"QUERY", "ADD", "DELETE", "IMPORT", "EXPORT"})
    {
        EXPECT_THAT(Do({"/?"}).out, HasSubstr("fraxoreg "s + verb + " /?"));
        const Outcome help = Do({verb, "/?"});
        EXPECT_EQ(help.status, 0);
        EXPECT_THAT(help.out, AllOf(StartsWith("\nfraxoreg "s + verb), HasSubstr("\nExamples:\n")));
        EXPECT_EQ(Do({verb, "HKCU", "--help"}).out, help.out);
    }
    EXPECT_THAT(Do({"--version"}).out, StartsWith("fraxoreg 22."));
}

// ---- import --------------------------------------------------------------------------------------------------------

using Import = FraxoRegTest;

constexpr char Header[] = "Windows Registry Editor Version 5.00\n";

TEST_F(Import, MakesAllChangesAndCountsThem)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Gone", "text");
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Former\Part)", "Name", "text");
    const std::string file = Write("in.reg", Header + R"(
[HKEY_CURRENT_USER\Software\Sample]
"Name"="text"
"Gone"=-
"Missing"=-
@=dword:10
[-HKEY_CURRENT_USER\Software\Former]
[-HKEY_CURRENT_USER\Software\Missing]
[HKEY_LOCAL_MACHINE\Software\Sample]
"List"=hex(7):61,00,00,00
)"s);
    Expect({"import", file}, Done + "Wrote 2 keys and 3 values, deleted 1 key and 1 value.\n"s);
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, Sample, "Name"), "text");
    EXPECT_FALSE(m_machine.ReadData(HKEY_CURRENT_USER, Sample, "Gone"));
    EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, Sample, ""), (StoredValue{REG_DWORD, "\x10\0\0\0"s}));
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, R"(Software\Former)"));
    EXPECT_EQ(m_machine.ReadData(HKEY_LOCAL_MACHINE, Sample, "List"), (StoredValue{REG_MULTI_SZ, "a\0"s}));

    EXPECT_EQ(Do({"import", "-"}, "REGEDIT4\n[HKEY_CURRENT_USER\\Piped]\n\"a\"=\"b\"").status, 0);
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, "Piped", "a"), "b");
}

TEST_F(Import, RefusesAFileWithAMalformedLineUnlessToldToSkipIt)
{
    const std::string file = Write("in.reg", Header + R"([HKEY_CURRENT_USER\Software\Sample]
"Name"="text"
"Broken"=dword:xyz
[HKEY_USERS\Elsewhere]
"Name"="text"
[HKEY_LOCAL_MACHINE\Software\Sample]
"Name"="text"
)"s);
    const Outcome refused = Do({"import", file});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.out, IsEmpty());
    EXPECT_THAT(refused.err,
                AllOf(StartsWith("ERROR: Nothing was imported: " + file + " has 3 malformed lines.\n" + file + ":4: "),
                      HasSubstr("\"Broken\"=dword:xyz\n"), HasSubstr(file + ":5: "), HasSubstr("--skip-errors")));
    EXPECT_FALSE(std::filesystem::exists(m_machine.Root() / "Registry"));

    const Outcome skipped = Do({"import", "--skip-errors", file});
    EXPECT_EQ(skipped.status, 2);
    EXPECT_EQ(skipped.out, Done + "Wrote 2 keys and 2 values, deleted 0 keys and 0 values.\n"s);
    EXPECT_THAT(skipped.err, AllOf(StartsWith("WARNING: 3 malformed lines left out.\n"), HasSubstr(file + ":4: ")));
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, Sample, "Name"), "text");
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, Sample, "Name"), "text");
}

TEST_F(Import, RefusesWhatIsNoRegistryFile)
{
    const std::string noScript = Write("in.reg", "REGEDIT5\n[HKEY_CURRENT_USER\\Software]\n");
    for (const char* const option : {"/reg:64", "--skip-errors"})
        EXPECT_THAT(Do({"import", noScript, option}).err,
                    StartsWith("ERROR: The specified file is not a registry script.\n"));
    for (const std::string& file : {PathOf("missing.reg"), m_machine.Root().string()})
        EXPECT_THAT(Do({"import", file}).err, AllOf(StartsWith("ERROR: Error opening the file."), HasSubstr(file)));
    EXPECT_EQ(Do({"import", noScript}).status, 1);
    const std::string noText = Write("in.reg", "REGEDIT4\n" + std::string(80, '\x80') + "\n");
    EXPECT_EQ(Do({"import", noText}).status, 1);
    EXPECT_FALSE(std::filesystem::exists(m_machine.Root() / "Registry"));
}

/// Lets no file grow beyond a size, as a full disk does.
class FileSizeLimit final
{
public:
    explicit FileSizeLimit(rlim_t size) : m_formerHandler{std::signal(SIGXFSZ, SIG_IGN)}
    {
        ::getrlimit(RLIMIT_FSIZE, &m_former);
        const rlimit limit{.rlim_cur = size, .rlim_max = m_former.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_former);
        std::signal(SIGXFSZ, m_formerHandler);
    }

private:
    rlimit m_former{};
    void (*m_formerHandler)(int);
};

TEST_F(Import, GivesTheFirstHiveItsStateBackWhenTheSecondFails)
{
    m_machine.WriteText(HKEY_LOCAL_MACHINE, Sample, "Name", "former");
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", "former");
    const std::string file = Write("in.reg", Header + R"([HKEY_LOCAL_MACHINE\Software\Sample]
"Name"="new"
"More"="new"
[HKEY_CURRENT_USER\Software\Sample]
"Name"=")"s + std::string(8192, 'x') + "\"\n");
    const std::string before = Read("Registry/HKEY_LOCAL_MACHINE.reg");
    {
        const FileSizeLimit onlyTheMachinesFits{4096};
        const Outcome outcome = Do({"import", file});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err,
                    AllOf(StartsWith("ERROR: "), HasSubstr("HKEY_CURRENT_USER.reg"), Not(HasSubstr("WARNING"))));
    }
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, Sample, "Name"), "former");
    EXPECT_EQ(Read("Registry/HKEY_LOCAL_MACHINE.reg"), before);
}

TEST_F(Import, ChangesNothingWhenTheSecondHiveIsUnusable)
{
    std::filesystem::create_directories(m_machine.Root() / "Registry" / "HKEY_CURRENT_USER.reg");
    const std::string file = Write("in.reg", Header + "[HKEY_LOCAL_MACHINE\\A]\n[HKEY_CURRENT_USER\\A]\n"s);
    EXPECT_EQ(Do({"import", file}).status, 1);
    EXPECT_FALSE(m_machine.HasKey(HKEY_LOCAL_MACHINE, "A"));
}

TEST_F(Import, ShowsProgressToATerminalAlone)
{
    std::string text = Header + "[HKEY_CURRENT_USER\\Many]\n"s;
    for (int i = 0; i < 5000; ++i)
        text += '"' + std::to_string(i) + "\"=\"text\"\n";
    const std::string file = Write("in.reg", text);
    const std::string progress = Do({"import", file}, "", true).err;
    EXPECT_THAT(progress,
                AllOf(HasSubstr("\rReading: 4096 values"), HasSubstr("\rWriting: 4096 values"), Not(HasSubstr("\n"))));
    EXPECT_TRUE(progress.ends_with("\r\x1B[K"));
    EXPECT_THAT(Do({"import", file}).err, IsEmpty());
}

// ---- export --------------------------------------------------------------------------------------------------------

using Export = FraxoRegTest;

TEST_F(Export, WritesAFileForWindowsThatImportGivesBack)
{
    const std::string file = PathOf("out.reg");
    for (const std::vector<std::string>& value : {std::vector<std::string>{"/d", "quote \" and \\ and \xC3\xA9"},
                                                  {"/v", "List", "/t", "REG_MULTI_SZ", "/d", R"(a\0b)"},
                                                  {"/v", "None", "/t", "REG_NONE", "/d", "x"}})
    {
        std::vector<std::string> arguments{"add", SampleName};
        arguments.insert(arguments.end(), value.begin(), value.end());
        Expect(arguments, Done);
    }
    Expect({"add", R"(HKCU\Software\Sample\Empty)"}, Done);
    const std::string before = Do({"query", SampleName, "/s"}).out;

    Expect({"export", SampleName, file}, Done);
    EXPECT_THAT(Read("out.reg"), StartsWith("\xFF\xFEW\0i\0n\0"s));
    Expect({"delete", SampleName, "/f"}, Done);
    EXPECT_EQ(Do({"import", file}).status, 0);
    EXPECT_EQ(Do({"query", SampleName, "/s"}).out, before);
}

TEST_F(Export, AsksBeforeItOverwrites)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", "text");
    const std::string file = Write("out.reg", "old");
    const std::string question = "File " + file + " already exists. Overwrite (Yes/No)? ";
    EXPECT_EQ(Do({"export", SampleName, file}, "n\n").out, question + Canceled);
    EXPECT_EQ(Do({"export", SampleName, file}, "n\n").status, 0);
    EXPECT_EQ(Read("out.reg"), "old");
    EXPECT_EQ(Do({"export", SampleName, file}, "y\n").out, question + Done);
    EXPECT_NE(Read("out.reg"), "old");
    Expect({"export", SampleName, file, "/Y"}, Done);
}

TEST_F(Export, PrintsTheHiveFormForADash)
{
    m_machine.WriteText(HKEY_LOCAL_MACHINE, Sample, "Name", "text");
    Expect({"export", R"(hklm\Software)", "-"}, Header + R"(
[HKEY_LOCAL_MACHINE\Software]

[HKEY_LOCAL_MACHINE\Software\Sample]
"Name"="text"

)"s);
}

TEST_F(Export, LeavesTheOldFileWhenItCannotWrite)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", std::string(4096, 'x'));
    const std::string file = Write("out.reg", "old");
    ExpectFailure({"export", R"(HKCU\Missing)", file, "/y"}, NotFound);
    {
        const FileSizeLimit none{1024};
        EXPECT_THAT(Do({"export", SampleName, file, "/y"}).err, StartsWith("ERROR: Unable to write to the file.\n"));
    }
    EXPECT_EQ(Read("out.reg"), "old");
    for (const std::string& noFile : {m_machine.Root().string(), "/dev/null"s, PathOf("missing/out.reg")})
        EXPECT_EQ(Do({"export", SampleName, noFile, "/y"}).status, 1) << noFile;
    const std::filesystem::directory_iterator left{m_machine.Root()};
    EXPECT_EQ(
        std::count_if(begin(left), end(left), [](const auto& entry) { return entry.path().extension() == ".tmp"; }), 0);
}

TEST_F(Export, WritesThroughALinkAndKeepsThePermissions)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", "text");
    const std::string file = Write("out.reg", "old");
    const auto mode = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    std::filesystem::permissions(file, mode);
    std::filesystem::create_symlink(file, PathOf("link.reg"));
    Expect({"export", SampleName, PathOf("link.reg"), "/y"}, Done);
    EXPECT_TRUE(std::filesystem::is_symlink(PathOf("link.reg")));
    EXPECT_NE(Read("out.reg"), "old");
    EXPECT_EQ(std::filesystem::status(file).permissions(), mode);
}

// ---- HKEY_CLASSES_ROOT ---------------------------------------------------------------------------------------------

class ClassesRoot : public FraxoRegTest
{
protected:
    static constexpr char InClasses[] = R"(Software\Classes\Product)";

    void SetUp() override
    {
        m_machine.WriteText(HKEY_LOCAL_MACHINE, InClasses, "Shared", "machine");
        m_machine.WriteText(HKEY_LOCAL_MACHINE, InClasses, "Machines", "machine");
        m_machine.WriteText(HKEY_LOCAL_MACHINE, R"(Software\Classes\Product\Both)", "", "machine");
        m_machine.WriteText(HKEY_CURRENT_USER, InClasses, "Shared", "user");
        m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Classes\Product\Own)", "", "user");
    }
};

TEST_F(ClassesRoot, IsShownMerged)
{
    Expect({"query", R"(HKCR\Product)"}, R"(
HKEY_CLASSES_ROOT\Product
    Shared    REG_SZ    user
    Machines    REG_SZ    machine

HKEY_CLASSES_ROOT\Product\Both
HKEY_CLASSES_ROOT\Product\Own
)");
    Expect({"query", "HKCR"}, "\nHKEY_CLASSES_ROOT\\Product\n");
    ExpectFailure({"query", R"(HKCR\Missing)"}, NotFound);
    EXPECT_THAT(Do({"export", R"(HKCR\Product)", "-"}).out,
                HasSubstr("[HKEY_CLASSES_ROOT\\Product\\Own]\n@=\"user\"\n"));
}

TEST_F(ClassesRoot, IsChangedWhereTheKeyIsKept)
{
    Expect({"add", R"(HKCR\Product)", "/v", "New", "/d", "text"}, Done);
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, InClasses, "New"), "text");
    Expect({"add", R"(HKCR\Product\Both)", "/d", "text", "/f"}, Done);
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, R"(Software\Classes\Product\Both)", ""), "text");
    Expect({"delete", R"(HKCR\Product)", "/v", "Machines", "/f"}, Done);
    EXPECT_FALSE(m_machine.ReadData(HKEY_LOCAL_MACHINE, InClasses, "Machines"));
    Expect({"delete", R"(HKCR\Product)", "/f"}, Done);
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, InClasses));
    EXPECT_EQ(TextAt(HKEY_CLASSES_ROOT, "Product", "Shared"), "machine");
}

TEST_F(ClassesRoot, OfAFileIsPlacedWhenItsTurnComes)
{
    const std::string file = Write("in.reg", Header + R"([HKEY_CLASSES_ROOT\Product]
"Shared"="new"
"Machines"=-
[HKEY_CLASSES_ROOT\First]
"a"="machine"
[HKEY_CURRENT_USER\Software\Classes\First]
[HKEY_CLASSES_ROOT\First]
"b"="user"
[-HKEY_CLASSES_ROOT\Product\Own]
[-HKEY_CLASSES_ROOT\Product\Both]
[-HKEY_CURRENT_USER\Software\Classes\Product]
[HKEY_CLASSES_ROOT\Product]
"Last"="machine"
)"s);
    EXPECT_EQ(Do({"import", file}).status, 0);
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, InClasses));
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, InClasses, "Shared"), "machine");
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, InClasses, "Machines"), "(none)");
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, InClasses, "Last"), "machine");
    EXPECT_FALSE(m_machine.HasKey(HKEY_LOCAL_MACHINE, R"(Software\Classes\Product\Both)"));
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, R"(Software\Classes\First)", "a"), "machine");
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, R"(Software\Classes\First)", "b"), "user");
}
} // namespace
