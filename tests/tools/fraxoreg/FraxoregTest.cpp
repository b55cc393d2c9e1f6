#include <csignal>
#include <filesystem>
#include <functional>
#include <iterator>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <vector>

#include <gmock/gmock.h>

#include "FraxoReg.h"
#include "common/StoredText.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// What the tool stores is read with the registry functions, and what it prints is compared letter for letter, because
// scripts read it.

namespace
{
using namespace std::string_literals;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;
namespace fs = std::filesystem;

constexpr char Sample[] = R"(Software\Sample)";
constexpr char Header[] = "Windows Registry Editor Version 5.00\n";
const std::string Done = "The operation completed successfully.\n";
const std::string Canceled = "The operation was canceled by the user.\n";
const std::string NotFound = "ERROR: The system was unable to find the specified registry key or value.\n";

struct Outcome
{
    int status = 0;
    std::string out;
    std::string err;
};

/// A command line or its switches, and what comes of it.
struct Row
{
    std::string line;
    DWORD number;
    std::string text;
};

/// The current directory is the machine's root, which each test has for itself.
class FraxoRegTest : public ::testing::Test
{
protected:
    FraxoRegTest() { fs::current_path(m_machine.Root()); }
    ~FraxoRegTest() override { fs::current_path(m_machine.Root().parent_path()); }

    static Outcome Run(const std::vector<std::string>& arguments, const std::string& input = {},
                       bool isTerminal = false)
    {
        std::istringstream in{input};
        std::ostringstream out;
        std::ostringstream err;
        const int status = FraxoReg::Run(arguments, {in, out, err, isTerminal, isTerminal});
        return {status, out.str(), err.str()};
    }

    /// Runs a command line whose words hold no blanks. ~ stands for the sample key.
    static Outcome Do(const std::string& line, const std::string& input = {}, bool isTerminal = false)
    {
        std::istringstream words{std::regex_replace(line, std::regex{"~"}, R"(HKCU\Software\Sample)")};
        return Run({std::istream_iterator<std::string>{words}, {}}, input, isTerminal);
    }

    static void Expect(const std::string& line, const std::string& out, const std::string& input = {})
    {
        const Outcome outcome = Do(line, input);
        EXPECT_EQ(outcome.status, 0) << line;
        EXPECT_EQ(outcome.out, out) << line;
        EXPECT_THAT(outcome.err, IsEmpty()) << line;
    }

    static void ExpectFailure(const std::string& line, const ::testing::Matcher<const std::string&>& err)
    {
        const Outcome outcome = Do(line);
        EXPECT_EQ(outcome.status, 1) << line;
        EXPECT_THAT(outcome.out, IsEmpty()) << line;
        EXPECT_THAT(outcome.err, err) << line;
    }

    std::string TextAt(HKEY root, const char* subKey, const char* name) const
    {
        const std::optional<StoredValue> value = m_machine.ReadData(root, subKey, name);
        return value ? value->bytes.c_str() : "(none)";
    }

    ScratchMachine m_machine{ScratchMachine::ClassesRoot::Merged};
};

TEST(Printable, EscapesWhatATerminalObeys)
{
    const std::pair<std::string, std::string> rows[] = {
        {"a \xC3\x9F \xF0\x9F\x98\x80", "a \xC3\x9F \xF0\x9F\x98\x80"},
        {"\x1B[2J\n\x7F\0"s, "\\x1b[2J\\x0a\\x7f\\x00"},
        {"\xC2\x9B \xC2\xA0", "\\x9b \xC2\xA0"},          // C1 ends before the no-break space
        {"\x9B \xC3 \xE2\x82", "\\x9b \\xc3 \\xe2\\x82"}, // not UTF-8
    };
    for (const auto& [stored, shown] : rows)
        EXPECT_EQ(Tools::Printable(stored), shown);
    EXPECT_EQ(Tools::Printable("a\n\x1B", "\n"), "a\n\\x1b");
}

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
        m_machine.WriteData(HKEY_CURRENT_USER, Sample, "Short", REG_DWORD, "\x01\x02"s);
        m_machine.WriteData(HKEY_CURRENT_USER, Sample, "Odd", 0x20, "\x01"s);
        m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Sample\Part\Inner)", "", "the default");
        m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Sample\Zoo)", "name", "TWO");
    }
};

TEST_F(Query, ShowsKeysAndValuesAsWindowsDoes)
{
    Expect(R"(QUERY hkey_current_user\SOFTWARE\Sample\)", R"(
HKEY_CURRENT_USER\SOFTWARE\Sample
    Name    REG_SZ    two words
    Count    REG_DWORD    0x1c8
    Big    REG_QWORD    0x1fffffffff
    Bytes    REG_BINARY    0ABC00
    List    REG_MULTI_SZ    one\0two
    Short    REG_DWORD    0102
    Odd    0x20    01

HKEY_CURRENT_USER\SOFTWARE\Sample\Part
HKEY_CURRENT_USER\SOFTWARE\Sample\Zoo
)");
    const std::string key = "\nHKEY_CURRENT_USER\\Software\\Sample";
    Expect(R"(query ~\Part /S)", key + "\\Part\\Inner\n    (Default)    REG_SZ    the default\n\n");
    Expect("query HKLM /reg:32", "\n");
    Expect("query ~ -v LIST --se # /z", key + "\n    List    REG_MULTI_SZ (7)    one#two\n\n");
    Expect("query ~ /ve", key + "\n    (Default)    REG_SZ    (value not set)\n\n");
    ExpectFailure("query ~ /v Missing", NotFound);
    ExpectFailure(R"(query ~\Missing /ve)", NotFound);
}

TEST_F(Query, FindsWhatTheSwitchesSay)
{
    const std::string key = R"(HKEY_CURRENT_USER\Software\Sample)";
    const std::string name = key + "\n    Name    REG_SZ    two words\n\n";
    const std::string zoosName = key + "\\Zoo\n    name    REG_SZ    TWO\n\n";
    const Row searches[] = {
        {"/f two", 2, key + "\n    Name    REG_SZ    two words\n    List    REG_MULTI_SZ    one\\0two\n\n"},
        {"/f two /e /s", 1, zoosName},
        {"/f TWO /c /s", 1, zoosName},
        {"/f n?me /v /e /s", 2, name + zoosName},
        {"/f n*r /s", 1, key + "\\Part\\Inner\n"},
        {"/f o /k /d /t REG_SZ", 2, name + key + "\\Zoo\n"},
        {"/f 0ab /d /t reg_binary", 1, key + "\n    Bytes    REG_BINARY    0ABC00\n\n"},
        {"/t REG_QWORD", 1, key + "\n    Big    REG_QWORD    0x1fffffffff\n\n"},
        {"/s /ve", 1, key + "\\Part\\Inner\n    (Default)    REG_SZ    the default\n\n"},
        {"/s /v name /f wo*s", 1, name},
    };
    for (const auto& [switches, count, found] : searches)
    {
        const std::string end = "End of search: " + std::to_string(count) + " match(es) found.\n";
        Expect("query ~ " + switches, '\n' + found + end);
    }
    const Outcome nothing = Do("query ~ /s /f nowhere");
    EXPECT_EQ(nothing.status, 1);
    EXPECT_EQ(nothing.out, "\nEnd of search: 0 match(es) found.\n");
    EXPECT_THAT(nothing.err, IsEmpty());
}

TEST_F(Query, KnowsCharactersBeyondAscii)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Gr\xC3\xB6\xC3\x9Fig", "a\x1B[2J\xC2\x9B\xC3\x9Bz");
    const std::string query = "query ~ /v /e /f GR\xC3\x96?IG"; // ? is one character, not one byte
    EXPECT_EQ(Do(query + " /c").status, 1);
    EXPECT_THAT(Do(query).out, HasSubstr("    a\x1B[2J\xC2\x9B\xC3\x9Bz\n"));
    EXPECT_THAT(Do(query, "", true).out, HasSubstr("    a\\x1b[2J\\x9b\xC3\x9Bz\n")) << "no control to a terminal";
}

TEST_F(Query, SaysThatMalformedLinesOfTheHiveAreNotShown)
{
    WriteFile("Registry/HKEY_CURRENT_USER.reg", Header + "[HKEY_CURRENT_USER]\n\"a\"=oops\n"s);
    const Outcome outcome = Do("query HKCU");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, AllOf(StartsWith("WARNING: "), HasSubstr("HKEY_CURRENT_USER.reg"), HasSubstr("line 3: ")));
}

// ---- add and delete ------------------------------------------------------------------------------------------------

using Add = FraxoRegTest;
using Delete = FraxoRegTest;

TEST_F(Add, StoresDataAsWindowsDoes)
{
    Expect(R"(add HKEY_Current_User\software\\SAMPLE\)", Done);
    EXPECT_FALSE(m_machine.ReadData(HKEY_CURRENT_USER, Sample, "")) << "a key alone gets no value";
    constexpr DWORD bigEndian = 5;
    const Row rows[] = {
        {"/ve", REG_SZ, "\0"s},
        {"/d /usr/bin", REG_SZ, "/usr/bin\0"s},
        {"/d /f", REG_SZ, "/f\0"s},
        {"-D 0123 -T reg_dword_little_endian", REG_DWORD, "\x7B\0\0\0"s},
        {"/d 456 /t REG_DWORD_BIG_ENDIAN", bigEndian, "\xC8\x01\0\0"s}, // Windows does not turn it either
        {"/d 0XfFffFFFF /t REG_DWORD", REG_DWORD, "\xFF\xFF\xFF\xFF"},
        {"/d 18446744073709551615 /t REG_QWORD", REG_QWORD, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"},
        {"/d abcde /t REG_BINARY", REG_BINARY, "\x0A\xBC\xDE"}, // an odd count has a 0 in front
        {"/d ab /t REG_NONE", REG_NONE, "a\0b\0\0\0"s},
        {R"(/d a\0b /t REG_MULTI_SZ)", REG_MULTI_SZ, "a\0b\0\0"s},
        {"/d a,b, /s , /t REG_MULTI_SZ", REG_MULTI_SZ, "a\0b\0\0"s},
        {"/d a /s \xC3\xA9 /t REG_MULTI_SZ", REG_MULTI_SZ, "a\0\0"s},
        {"/t REG_MULTI_SZ", REG_MULTI_SZ, "\0"s},
    };
    for (const auto& [switches, type, bytes] : rows)
    {
        Expect("ADD ~ /F " + switches, Done);
        EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, Sample, ""), (StoredValue{type, bytes})) << switches;
    }
}

TEST_F(Add, AsksBeforeItOverwrites)
{
    const char* const rows[][2] = {{"y\n", "new"},  {"YES\r\n", "new"}, {"what\n\nyes", "new"},
                                   {"No\n", "old"}, {"n", "old"},       {"", "old"}};
    for (const auto& [input, stored] : rows)
    {
        m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", "old");
        const Outcome outcome = Do("add ~ /v Name /d new", input);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.out, StartsWith("Value Name exists, overwrite(Yes/No)? "));
        EXPECT_THAT(outcome.out, EndsWith(stored == "new"s ? Done : Canceled)) << input;
        EXPECT_EQ(TextAt(HKEY_CURRENT_USER, Sample, "Name"), stored) << input;
    }
}

TEST_F(Delete, AsksAndTakesAValueAllValuesOrTheKey)
{
    for (const char* const name : {"", "Name", "Other"})
        m_machine.WriteText(HKEY_CURRENT_USER, Sample, name, "text");
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Sample\Part)", "Name", "text");
    const auto left = [] { return Do("query HKCU /s /d /f text").out; };
    const std::string key = R"(HKEY_CURRENT_USER\Software\Sample)";
    const Row rows[] = {
        {"delete ~ /v Name", 3, "Permanently delete the registry value Name (Yes/No)? "},
        {"delete ~ /ve", 2, "Permanently delete the registry value (Default) (Yes/No)? "},
        {"delete ~ /va", 1, "Delete all values under the registry key " + key + " (Yes/No)? "},
        {"delete ~", 0, "Permanently delete the registry key " + key + " (Yes/No)? "},
    };
    for (const auto& [line, leftCount, question] : rows)
    {
        const std::string before = left();
        Expect(line, question + Canceled, "no\n");
        EXPECT_EQ(left(), before);
        Expect(line, question + Done, "yes\n");
        EXPECT_THAT(left(), EndsWith("End of search: " + std::to_string(leftCount) + " match(es) found.\n"));
    }
    for (const char* const line : {"delete ~", "delete ~ /va", R"(delete HKCU\Software /ve)"})
        ExpectFailure(line, NotFound); // without a question
    ExpectFailure("delete HKCU /f", "ERROR: A root key cannot be deleted.\n");
    EXPECT_TRUE(m_machine.HasKey(HKEY_CURRENT_USER, "Software"));
}

// ---- wrong use -----------------------------------------------------------------------------------------------------

using WrongUse = FraxoRegTest;

TEST_F(WrongUse, IsRefusedAsOnWindowsAndChangesNothing)
{
    const struct
    {
        std::string line;
        std::vector<std::string> ends;
        const char* message;
    } rows[] = {
        {"QUERY ", {"", "HKCU /v a /ve", "HKCU /reg:32 /reg:64"}, ""},
        {"QUERY ", {R"(HKXX\a)", "HKCUSoftware", R"(HKEY_USERS\a)", R"(\\machine\HKLM\a)"}, "Invalid key name."},
        {"QUERY HKCU ", {"/s /S"}, " '/s' option is not allowed more than '1' time(s)."},
        {"QUERY HKCU ", {"/v"}, " Value expected for '/v'."},
        {"QUERY HKCU ", {"/k"}, " '/k' needs '/f'."},
        {"QUERY HKCU ", {"/se ab"}, " Specify one character for '/se'."},
        {"ADD HKCU\\", {std::string(256, 'x')}, "Invalid key name."},
        {"ADD HKCU /v ", {std::string(16384, 'x')}, " Specify valid value name for '/v'."},
        {"ADD ~ /t REG_LINK", {""}, " Specify valid type for '/t'."},
        {"ADD ~ /t REG_DWORD /d ", {"1x", "-1", "+1", "0x", "4294967296"}, " Specify valid numeric value for '/d'."},
        {"ADD ~ /t REG_QWORD /d ", {"18446744073709551616"}, " Specify valid numeric value for '/d'."},
        {"ADD ~ /t REG_BINARY /d ", {"0x12", "1g", "g"}, " Specify valid hexadecimal digits for '/d'."},
        {"ADD ~ /t REG_MULTI_SZ /d ", {R"(\0a)", R"(a\0\0b)", R"(a\0\0)"}, " Specify no empty string within '/d'."},
        {"IMPORT ", {"a b"}, " 'b' is not expected here."},
    };
    for (const auto& [line, ends, message] : rows)
    {
        const std::string reason = message == "Invalid key name."s ? message : "Invalid syntax."s + message;
        const std::string help = "\nType \"fraxoreg " + line.substr(0, line.find(' ')) + " /?\" for usage.\n";
        for (const std::string& end : ends)
            ExpectFailure(line + end, StartsWith("ERROR: " + reason + help));
    }
    for (const char* const line : {"", "copy HKCU"})
        ExpectFailure(line, "ERROR: Invalid syntax.\nType \"fraxoreg /?\" for usage.\n");
    EXPECT_THAT(Do("query HKCUSoftware").err, HasSubstr(R"('HKCU\Software')")); // what a shell makes of it unquoted
    EXPECT_EQ(Run({"add", "HKCU\\a\nb"}).status, 1);
    EXPECT_FALSE(fs::exists("Registry"));
}

TEST_F(WrongUse, IsHelped)
{
    for (const std::string verb : {"QUERY", "ADD", "DELETE", "IMPORT", "EXPORT"})
    {
        EXPECT_THAT(Do("--help").out, HasSubstr("fraxoreg " + verb + " /?"));
        EXPECT_THAT(Do(verb + " HKCU /?").out, StartsWith("\nfraxoreg " + verb));
    }
}

// ---- import --------------------------------------------------------------------------------------------------------

using Import = FraxoRegTest;

TEST_F(Import, MakesAllChangesAndCountsThem)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Gone", "text");
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Former\Part)", "Name", "text");
    Expect("import -", Done + "Wrote 2 keys and 2 values, deleted 1 key and 1 value.\n", R"(REGEDIT4
[HKEY_CURRENT_USER\Software\Sample]
"Name"="text"
"Gone"=-
"Missing"=-
[-HKEY_CURRENT_USER\Former]
[-HKEY_CURRENT_USER\Missing]
[HKEY_LOCAL_MACHINE\Software\Sample]
@="text")");
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, Sample, "Name"), "text");
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, Sample, "Gone"), "(none)");
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, "Former"));
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, Sample, ""), "text");
}

TEST_F(Import, RefusesAFileWithAMalformedLineUnlessToldToSkipIt)
{
    WriteFile("./in.reg", Header + R"([HKEY_CURRENT_USER\Software\Sample]
"Broken"=dword:xyz
[HKEY_USERS\Elsewhere]
[HKEY_LOCAL_MACHINE\Software\Sample]
"Name"="text")"s);
    ExpectFailure("import in.reg",
                  AllOf(StartsWith("ERROR: Nothing was imported: in.reg has 2 malformed lines.\nin.reg:3: "),
                        HasSubstr("\"Broken\"=dword:xyz\n"), HasSubstr("in.reg:4: "), HasSubstr("--skip-errors")));
    EXPECT_FALSE(fs::exists("Registry"));

    const Outcome skipped = Do("import --skip-errors in.reg");
    EXPECT_EQ(skipped.status, 2);
    EXPECT_THAT(skipped.out, EndsWith("Wrote 2 keys and 1 value, deleted 0 keys and 0 values.\n"));
    EXPECT_THAT(skipped.err, StartsWith("WARNING: 2 malformed lines left out.\nin.reg:3: "));
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, Sample, "Name"), "text");
}

TEST_F(Import, RefusesWhatIsNoRegistryFile)
{
    WriteFile("./in.reg", "REGEDIT5\n[HKEY_CURRENT_USER\\Software]\n");
    for (const char* const line : {"import in.reg /reg:64", "import in.reg --skip-errors"})
        ExpectFailure(line, StartsWith("ERROR: The specified file is not a registry script.\n"));
    for (const std::string file : {"missing.reg", "/"})
        ExpectFailure("import " + file, AllOf(StartsWith("ERROR: Error opening the file."), HasSubstr(file)));
    WriteFile("./in.reg", "REGEDIT4\n" + std::string(80, '\x80') + "\n");
    EXPECT_EQ(Do("import in.reg").status, 1) << "no text";
    EXPECT_FALSE(fs::exists("Registry"));
}

/// Runs `body` while no file can grow beyond a size, as on a full disk.
void WithFileSizeLimit(rlim_t size, const std::function<void()>& body)
{
    rlimit former{};
    ::getrlimit(RLIMIT_FSIZE, &former);
    const rlimit limit{.rlim_cur = size, .rlim_max = former.rlim_max};
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    body();
    ::setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, formerHandler);
}

TEST_F(Import, GivesTheFirstHiveItsStateBackWhenTheSecondFails)
{
    m_machine.WriteText(HKEY_LOCAL_MACHINE, Sample, "Name", "former");
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", "former");
    WriteFile("./in.reg", Header + "[HKEY_LOCAL_MACHINE\\Software\\Sample]\n\"Name\"=\"new\"\n"s +
                              "[HKEY_CURRENT_USER\\Software\\Sample]\n\"Name\"=\"" + std::string(8192, 'x') + "\"\n");
    const std::string before = ReadFile("Registry/HKEY_LOCAL_MACHINE.reg");
    const auto import = []
    {
        ExpectFailure("import in.reg", AllOf(StartsWith("ERROR: Error accessing the registry.\n"),
                                             HasSubstr("HKEY_CURRENT_USER.reg"), Not(HasSubstr("WARNING"))));
    };
    WithFileSizeLimit(4096, import);
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, Sample, "Name"), "former");
    EXPECT_FALSE(fs::exists("Registry/HKEY_CURRENT_USER.reg.new"));
    EXPECT_EQ(ReadFile("Registry/HKEY_LOCAL_MACHINE.reg"), before);
}

TEST_F(Import, ChangesNothingWhenTheSecondHiveIsUnusable)
{
    fs::create_directories("Registry/HKEY_CURRENT_USER.reg");
    EXPECT_EQ(Do("import -", Header + "[HKEY_LOCAL_MACHINE\\A]\n[HKEY_CURRENT_USER\\A]\n"s).status, 1);
    EXPECT_FALSE(m_machine.HasKey(HKEY_LOCAL_MACHINE, "A"));
}

TEST_F(Import, ShowsProgressToATerminalAlone)
{
    std::string text = Header + "[HKEY_CURRENT_USER\\Many]\n"s;
    for (int i = 0; i < 5000; ++i)
        text += '"' + std::to_string(i) + "\"=\"text\"\n";
    EXPECT_THAT(Do("import -", text, true).err,
                AllOf(HasSubstr("\rReading: 4096 values"), HasSubstr("\rWriting: 4096 values"), Not(HasSubstr("\n")),
                      EndsWith("\r\x1B[K")));
    EXPECT_THAT(Do("import -", text).err, IsEmpty());
}

// ---- export --------------------------------------------------------------------------------------------------------

using Export = FraxoRegTest;

TEST_F(Export, WritesAFileForWindowsThatImportGivesBack)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "", "quote \" and \\ and \xC3\xA9");
    m_machine.WriteData(HKEY_CURRENT_USER, Sample, "List", REG_MULTI_SZ, "a\0b\0\0"s);
    Expect(R"(add ~\Empty)", Done);
    const std::string before = Do("query ~ /s").out;
    Expect("export ~ out.reg", Done);
    EXPECT_THAT(ReadFile("out.reg"), StartsWith("\xFF\xFEW\0i\0n\0"s));
    Expect("delete ~ /f", Done);
    EXPECT_EQ(Do("import out.reg").status, 0);
    Expect("query ~ /s", before);
    Expect(R"(export ~\Empty -)", Header + "\n[HKEY_CURRENT_USER\\Software\\Sample\\Empty]\n\n"s);
}

TEST_F(Export, LeavesTheOldFileWhenItMayNotOrCannotWrite)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", std::string(4096, 'x'));
    WriteFile("./out.reg", "old");
    Expect("export ~ out.reg", "File out.reg already exists. Overwrite (Yes/No)? " + Canceled, "n\n");
    ExpectFailure(R"(export HKCU\Missing out.reg /y)", NotFound);
    const auto overwrite = []
    { ExpectFailure("export ~ out.reg /y", StartsWith("ERROR: Unable to write to the file.\n")); };
    WithFileSizeLimit(1024, overwrite);
    EXPECT_EQ(ReadFile("out.reg"), "old");
    for (const std::string noFile : {"Registry", "/dev/null", "missing/out.reg"})
        EXPECT_EQ(Do("export ~ " + noFile + " /y").status, 1) << noFile;
    for (const auto& entry : fs::directory_iterator{"."})
        EXPECT_NE(entry.path().extension(), ".tmp");
}

TEST_F(Export, WritesThroughALinkAndKeepsThePermissions)
{
    m_machine.WriteText(HKEY_CURRENT_USER, Sample, "Name", "text");
    WriteFile("./out.reg", "old");
    fs::permissions("out.reg", fs::perms{0600});
    fs::create_symlink("out.reg", "link.reg");
    Expect("export ~ link.reg", "File link.reg already exists. Overwrite (Yes/No)? " + Done, "y\n");
    EXPECT_TRUE(fs::is_symlink("link.reg"));
    EXPECT_NE(ReadFile("out.reg"), "old");
    EXPECT_EQ(fs::status("out.reg").permissions(), fs::perms{0600});
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
    }
};

TEST_F(ClassesRoot, IsShownMergedAndChangedWhereTheKeyIsKept)
{
    const std::string key = "\nHKEY_CLASSES_ROOT\\Product";
    const std::string shared = key + "\n    Shared    REG_SZ    user\n";
    Expect(R"(query HKCR\Product)", shared + "    Machines    REG_SZ    machine\n" + key + "\\Both\n");
    Expect(R"(add HKCR\Product /v New /d text)", Done);
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, InClasses, "New"), "text");
    Expect(R"(add HKCR\Product\Both /d text /f)", Done);
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, R"(Software\Classes\Product\Both)", ""), "text");
    Expect(R"(delete HKCR\Product /v Machines /f)", Done);
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, InClasses, "Machines"), "(none)");
    Expect(R"(delete HKCR\Product /f)", Done);
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, InClasses));
    EXPECT_EQ(TextAt(HKEY_CLASSES_ROOT, "Product", "Shared"), "machine");
}

TEST_F(ClassesRoot, OfAFileIsPlacedWhenItsTurnComes)
{
    const std::string file = Header + R"([HKEY_CLASSES_ROOT\Product]
"Shared"="new"
[HKEY_CLASSES_ROOT\First]
"a"="machine"
[HKEY_CURRENT_USER\Software\Classes\First]
[HKEY_CLASSES_ROOT\First]
"b"="user"
[-HKEY_CLASSES_ROOT\Product\Both]
[-HKEY_CURRENT_USER\Software\Classes\Product]
[HKEY_CLASSES_ROOT\Product]
"Last"="machine"
)"s;
    EXPECT_EQ(Do("import -", file).status, 0);
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, InClasses));
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, InClasses, "Shared"), "machine");
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, InClasses, "Last"), "machine");
    EXPECT_FALSE(m_machine.HasKey(HKEY_LOCAL_MACHINE, R"(Software\Classes\Product\Both)"));
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, R"(Software\Classes\First)", "a"), "machine");
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, R"(Software\Classes\First)", "b"), "user");
}
} // namespace
