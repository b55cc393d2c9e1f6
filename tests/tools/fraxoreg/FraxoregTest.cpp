#include <filesystem>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>

#include "Operations.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace std::string_literals;
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
        std::ostringstream out, err;
        const std::vector<std::string> arguments{std::istream_iterator<std::string>{words}, {}};
        const int status = FraxoReg::Run(arguments, {in, out, err, isTerminal});
        return out.str() + err.str() + (status == 0 ? "" : "[" + std::to_string(status) + "]\n");
    }

    ScratchMachine m_machine{ScratchMachine::ClassesRoot::Merged};
};

/// Compares what is printed letter for letter, because scripts read it. A line `> ` is a command, the lines `| ` after
/// it are its input, and the others its output.
TEST_F(FraxoRegTest, AnswersAsInTheSession)
{
    std::istringstream lines{ReadFile(SESSION_FILE) + "> "};
    std::string command, input, output;
    for (std::string line; std::getline(lines, line);)
    {
        if (line.starts_with("| "))
            input += line.substr(2) + '\n';
        else if (!line.starts_with("> "))
            output += line + '\n';
        else
        {
            EXPECT_EQ(command.empty() ? "" : Do(command, input), output) << command;
            command = line.substr(2);
            input = output = {};
        }
    }
}

TEST_F(FraxoRegTest, AddStoresDataAsWindowsDoes)
{
    const std::tuple<const char*, DWORD, std::string> rows[] = {
        {"/ve /d /usr/bin", REG_SZ, "/usr/bin\0"s},
        {"-D 0123 -T reg_dword", REG_DWORD, "\x7B\0\0\0"s},
        {"/d 18446744073709551615 /t REG_QWORD", REG_QWORD, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"},
        {"/d abcde /t REG_BINARY", REG_BINARY, "\x0A\xBC\xDE"}, // an odd count has a 0 in front
        {R"(/d a\0b /t REG_MULTI_SZ)", REG_MULTI_SZ, "a\0b\0\0"s},
        {"/d a,b, /s , /t REG_MULTI_SZ", REG_MULTI_SZ, "a\0b\0\0"s},
    };
    for (const auto& [switches, type, bytes] : rows)
    {
        EXPECT_EQ(Do("ADD ~ /F "s + switches), "The operation completed successfully.\n") << switches;
        EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, R"(Software\Sample)", ""), (StoredValue{type, bytes}));
    }
}

TEST_F(FraxoRegTest, WrongUseChangesNothing)
{
    EXPECT_THAT(Do(""), StartsWith("ERROR: Invalid syntax. The operation is missing.\n"));
    EXPECT_THAT(Do("query HKXX\x1B"), StartsWith("ERROR: Invalid key name 'HKXX\\x1b'.\n"));
    EXPECT_THAT(Do("ADD HKCU /?"), StartsWith("Usage: fraxoreg add KeyName "));
    EXPECT_THAT(Do("import - --skip-errors", "REGEDIT5\n"), StartsWith("ERROR: The specified file is not a registry "));
    ASSERT_EQ(::mkfifo("pipe.reg", 0600), 0);
    for (const std::string file : {"missing.reg", "/", "pipe.reg", "/dev/zero"})
        EXPECT_THAT(Do("import " + file),
                    StartsWith("ERROR: Error opening the file. There may be a disk or file system error.\n" + file));
    const std::string deep = std::regex_replace(std::string(511, '.'), std::regex{"[.]"}, R"(\k)"); // below the classes
    EXPECT_THAT(Do("import - --skip-errors", "REGEDIT4\n[HKEY_CLASSES_ROOT" + deep + "]\n"), HasSubstr("1 malformed"));
    EXPECT_FALSE(fs::exists("Registry"));
    WriteFile("Registry/HKEY_CURRENT_USER.reg", "REGEDIT4\n[HKEY_CURRENT_USER]\n\"a\"=oops\n");
    EXPECT_THAT(Do("query HKCU"), HasSubstr("WARNING: 1 malformed lines are skipped"));
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
    ::umask(0);
    WriteFile("./out.reg", "old, and readable by all");
    fs::create_symlink("out.reg", "link.reg");
    Do("export HKCU link.reg /y");
    Do("export HKLM root.reg");
    EXPECT_EQ(fs::status("out.reg").permissions(), fs::perms{0600});
    EXPECT_EQ(fs::status("root.reg").permissions(), fs::perms{0644});
    EXPECT_TRUE(fs::is_symlink("link.reg"));
}
} // namespace
