#include <filesystem>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <vector>

#include <gmock/gmock.h>

#include "Operations.h"
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

TEST(Lower, IsThatOfLatinLetters)
{
    EXPECT_EQ(Tools::Lower("AZ[@\xC3\x80\xC3\x96\xC3\x97\xC3\x9E\xC3\x9F\xC4\x80"),
              "az[@\xC3\xA0\xC3\xB6\xC3\x97\xC3\xBE\xC3\x9F\xC4\x80"); // U+00D7 is the multiplication sign
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
    EXPECT_THAT(Do("ADD HKCU /?"), StartsWith("Usage: fraxoreg add KeyName "));
    EXPECT_FALSE(fs::exists("Registry"));
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

TEST_F(FraxoRegTest, ExportWritesAFileForWindows)
{
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Sample)", "\xC2\x9B\xC2\xA0", "\" and \\ and \xC3\xA9");
    const std::string before = Do("export ~ -");
    EXPECT_THAT(before, HasSubstr("\n\"\xC2\x9B\xC2\xA0\"=\"\\\" and \\\\ and \xC3\xA9\"\n"));
    EXPECT_THAT(Do("export ~ -", {}, true), HasSubstr("\n\"\\x9b\xC2\xA0\"=")) << "to a terminal";
    Do("export ~ out.reg");
    EXPECT_THAT(ReadFile("out.reg"), StartsWith("\xFF\xFEW\0i\0n\0"s));
    Do("delete ~ /f");
    Do("import out.reg");
    EXPECT_EQ(Do("export ~ -"), before);
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
