#include <filesystem>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <vector>

#include <gmock/gmock.h>

#include "FraxoReg.h"
#include "common/StoredText.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace std::string_literals;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;
namespace fs = std::filesystem;

/// The current directory is the machine's root, which each test has for itself.
class FraxoRegTest : public ::testing::Test
{
protected:
    FraxoRegTest() { fs::current_path(m_machine.Root()); }
    ~FraxoRegTest() override { fs::current_path(m_machine.Root().parent_path()); }

    /// What a command line, whose words hold no blanks, prints; with its exit status if that is not 0.
    static std::string Do(const std::string& line, const std::string& input = {}, bool isTerminal = false)
    {
        std::istringstream words{std::regex_replace(line, std::regex{"~"}, R"(HKCU\Software\Sample)")};
        std::istringstream in{input};
        std::ostringstream out;
        std::ostringstream err;
        const std::vector<std::string> arguments{std::istream_iterator<std::string>{words}, {}};
        const int status = FraxoReg::Run(arguments, {in, out, err, isTerminal});
        return out.str() + err.str() + (status == 0 ? "" : "[" + std::to_string(status) + "]\n");
    }

    /// Compares what is printed letter for letter, because scripts read it. A line `> ` is a command, the lines `| `
    /// after it are its input, and the others its output.
    static void Play(const std::string& session)
    {
        std::istringstream lines{session};
        std::string command, input, output;
        const auto check = [&] { EXPECT_EQ(Do(command, input), output) << command; };
        for (std::string line; std::getline(lines, line);)
        {
            if (line.starts_with("> "))
            {
                if (!command.empty())
                    check();
                command = line.substr(2);
                input = output = {};
            }
            else
                line.starts_with("| ") ? input += line.substr(2) + '\n' : output += line + '\n';
        }
        check();
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

TEST_F(FraxoRegTest, AnswersAsInTheSession)
{
    Play(ReadFile(SESSION_FILE));
}

TEST_F(FraxoRegTest, QueryReportsMalformedLines)
{
    WriteFile("Registry/HKEY_CURRENT_USER.reg", "REGEDIT4\n[HKEY_CURRENT_USER]\n\"a\"=oops\n");
    EXPECT_THAT(Do("query HKCU"),
                AllOf(HasSubstr("WARNING: "), HasSubstr("HKEY_CURRENT_USER.reg\n"), HasSubstr("3: ")));
}

TEST_F(FraxoRegTest, AddStoresDataAsWindowsDoes)
{
    const struct
    {
        std::string switches;
        DWORD type;
        std::string bytes;
    } rows[] = {
        {"/ve", REG_SZ, "\0"s},
        {"/d /usr/bin", REG_SZ, "/usr/bin\0"s},
        {"/d /?", REG_SZ, "/?\0"s},
        {"-D 0123 -T reg_dword", REG_DWORD, "\x7B\0\0\0"s},
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
        EXPECT_EQ(Do("ADD ~ /F " + switches), "The operation completed successfully.\n") << switches;
        EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, R"(Software\Sample)", ""), (StoredValue{type, bytes}));
    }
}

TEST_F(FraxoRegTest, WrongUseChangesNothing)
{
    EXPECT_THAT(Do(""), StartsWith("ERROR: Invalid syntax. The operation is missing.\n"));
    EXPECT_THAT(Do("query HKXX\x1B"), StartsWith("ERROR: Invalid key name 'HKXX\\x1b'.\n"));
    EXPECT_THAT(Do("add HKCU\\" + std::string(256, 'x')), StartsWith("ERROR: Invalid key name 'HKCU\\xxx"));
    EXPECT_THAT(Do("add HKCU /v " + std::string(16384, 'x')), HasSubstr("The name of the value is too long"));
    EXPECT_THAT(Do("ADD HKCU /?"), StartsWith("\nfraxoreg add KeyName "));
    EXPECT_FALSE(fs::exists("Registry"));
}

TEST_F(FraxoRegTest, ImportMakesAllChangesOrSkipsMalformedLines)
{
    const std::string changes = R"(REGEDIT4
[HKEY_CURRENT_USER\Software\Sample]
"Broken"=dword:xyz
[HKEY_USERS\Elsewhere]
[HKEY_CURRENT_USER\Software\Sample]
"Gone"=-
"Missing"=-
[-HKEY_CURRENT_USER\Former]
[-HKEY_CURRENT_USER\Missing]
[HKEY_LOCAL_MACHINE\A]
)";
    EXPECT_EQ(
        Do("import -",
           "REGEDIT4\n[HKEY_CURRENT_USER\\Former\\Part]\n[HKEY_CURRENT_USER\\Software\\Sample]\n\"Gone\"=hex(1):61"),
        "The operation completed successfully.\n");
    const std::string before = ReadFile("Registry/HKEY_CURRENT_USER.reg");
    EXPECT_THAT(before, HasSubstr("\"Gone\"=\"a\"\n")) << "with the NUL that Windows adds";
    EXPECT_THAT(
        Do("import -", changes),
        AllOf(StartsWith("ERROR: Nothing was imported: standard input has 2 malformed lines.\nstandard input:3: "),
              HasSubstr(": \"Broken\"=dword:xyz\nstandard input:4: ")));
    EXPECT_EQ(ReadFile("Registry/HKEY_CURRENT_USER.reg"), before);
    EXPECT_FALSE(fs::exists("Registry/HKEY_LOCAL_MACHINE.reg"));

    EXPECT_THAT(
        Do("import - --skip-errors", changes),
        AllOf(StartsWith(
                  "The operation completed successfully.\nWARNING: 2 malformed lines left out.\nstandard input:3: "),
              HasSubstr("[2]")));
    Play("> query HKCU /s\n\nHKEY_CURRENT_USER\nHKEY_CURRENT_USER\\Software\nHKEY_CURRENT_USER\\Software\\Sample\n> "
         "query HKLM\n\nHKEY_LOCAL_MACHINE\\A\n");
}

TEST_F(FraxoRegTest, ImportRefusesWhatIsNotARegistryFile)
{
    EXPECT_THAT(Do("import - --skip-errors", "REGEDIT5\n"), StartsWith("ERROR: The specified file is not a registry "));
    ASSERT_EQ(::mkfifo("pipe.reg", 0600), 0);
    for (const std::string file : {"missing.reg", "/", "pipe.reg", "/dev/zero"})
        EXPECT_THAT(Do("import " + file),
                    StartsWith("ERROR: Error opening the file. There may be a disk or file system error.\n" + file));
}

TEST_F(FraxoRegTest, ImportSaysWhichHiveWasChangedBeforeAFailure)
{
    fs::create_directories("Registry/HKEY_CURRENT_USER.reg");
    EXPECT_THAT(Do("import -", "REGEDIT4\n[HKEY_CURRENT_USER\\A]\n[HKEY_LOCAL_MACHINE\\A]\n"),
                AllOf(HasSubstr("HKEY_CURRENT_USER.reg"), HasSubstr("\nThe changes of HKEY_LOCAL_MACHINE were made ")));
    EXPECT_TRUE(m_machine.HasKey(HKEY_LOCAL_MACHINE, "A"));
}

TEST_F(FraxoRegTest, ExportWritesAFileForWindowsThatImportGivesBack)
{
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Sample)", "\xC2\x9B", "\" and \\ and \xC3\xA9");
    const std::string before = Do("export ~ -");
    EXPECT_EQ(before, "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Sample]\n"
                      "\"\xC2\x9B\"=\"\\\" and \\\\ and \xC3\xA9\"\n\n");
    EXPECT_THAT(Do("export ~ -", {}, true), HasSubstr("\n\"\\x9b\"=")) << "to a terminal";
    Play("> export ~ out.reg\nThe operation completed successfully.\n"
         "> delete ~ /f\nThe operation completed successfully.\n> import out.reg\nThe operation completed "
         "successfully.\n> export ~ -\n" +
         before);
    EXPECT_THAT(ReadFile("out.reg"), StartsWith("\xFF\xFEW\0i\0n\0"s));
}

TEST_F(FraxoRegTest, ExportLeavesTheOldFileWhenItMayNotOrCannotWrite)
{
    WriteFile("./out.reg", "old");
    Play("> export HKCU out.reg\n| n\nFile out.reg already exists. Overwrite (Yes/No)? The operation was canceled by "
         "the user.\n"
         "> export HKCU\\Missing out.reg /y\nERROR: The system was unable to find the specified registry key or "
         "value.\n[1]\n");
    EXPECT_EQ(ReadFile("out.reg"), "old");
    for (const std::string notAFile : {".", "/dev/null", "missing/out.reg"})
        EXPECT_THAT(Do("export HKCU " + notAFile + " /y"), StartsWith("ERROR: Unable to write to the file.\n"));
}

TEST_F(FraxoRegTest, ExportKeepsAUsersKeysFromOthers)
{
    WriteFile("./out.reg", "old");
    fs::permissions("out.reg", fs::perms{0666});
    fs::create_symlink("out.reg", "link.reg");
    const ::mode_t former = ::umask(0);
    const std::pair<std::string, ::mode_t> rows[] = {
        {"HKCU link.reg /y", 0600}, {"HKCR user.reg", 0600}, {"HKLM root.reg", 0644}};
    for (const auto& [arguments, mode] : rows)
    {
        EXPECT_EQ(Do("export " + arguments), "The operation completed successfully.\n");
        EXPECT_EQ(fs::status(arguments.substr(5, 8)).permissions(), fs::perms{mode}) << arguments;
    }
    ::umask(former);
    EXPECT_TRUE(fs::is_symlink("link.reg"));
}
} // namespace
