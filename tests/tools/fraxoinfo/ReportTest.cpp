#include <cstddef>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "Commands.h"
#include "Diff.h"
#include "Json.h"
#include "support/Files.h"
#include "support/InstallationTest.h"

namespace
{
using namespace FraxoInfo;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::ThrowsMessage;

class Report : public InstallationTest
{
protected:
    std::string File(const char* name) const { return (m_machine.Root() / name).string(); }

    std::string Write(const char* name, const std::string& text) const
    {
        WriteFile(m_machine.Root() / name, text);
        return File(name);
    }
};

TEST_F(Report, LeavesOutPersonalDataUnlessAsked)
{
    m_machine.SetEnvironment("USERPROFILE", R"(C:\Users\alex7\)");
    m_machine.SetEnvironment("LOGNAME", "logan");
    Install(R"(C:\Users\ALEX7\Fraxo of Kim, not Kimberley, and logan)");
    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "UserName", "Kim");
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor\Support)", "UserEmail", "kim@example.com");
    m_machine.WriteText(HKEY_CURRENT_USER, SettingsKey + R"(\Configurations)", "DefaultProjectName", "Kim Tower");
    UseProject("harbour-7", true);

    EXPECT_THAT(MakeReport(true), AllOf(HasSubstr("harbour-7"), HasSubstr("kim@example.com"), HasSubstr("Kim Tower"),
                                        HasSubstr("ALEX7"), HasSubstr("Kim,")));
    const std::string report = MakeReport(false);
    for (const char* const personal : {"harbour-7", "kim@example.com", "Tower", "alex7", "ALEX7", "Kim,", "logan"})
        EXPECT_THAT(report, Not(HasSubstr(personal)));
    EXPECT_THAT(report,
                AllOf(HasSubstr(R"(C:\\Users\\<account>\\Fraxo of <user name>, not Kimberley, and <account>\\)"),
                      HasSubstr(R"(\\<project id>\\)"), HasSubstr("\"<project name>\"")));
}

TEST_F(Report, LeavesOutEveryStoredTextOfNoKnownForm)
{
    // Stores a marker wherever the library looks, as long as that leads to places it has not asked before.
    int count = 0;
    for (std::size_t stored = 1; stored != 0;)
    {
        stored = 0;
        for (const Answer& answer : AskForEverything(false))
        {
            for (const Source& source : answer.trace)
            {
                const std::string marker = "PERSONAL-" + std::to_string(++count);
                if (source.held)
                    continue;
                const std::size_t start = source.place.find('\\') + 1, end = source.place.rfind('\\');
                const std::string root = source.place.substr(0, start);
                if (source.kind == Source::Kind::Environment && source.place != "FRAXO_PRO_ROOT_DIRECTORY")
                    m_machine.SetEnvironment(source.place, marker);
                else if (source.kind == Source::Kind::RegistryValue && source.problem.empty() &&
                         (root != "HKEY_CLASSES_ROOT\\" ||
                          source.place.starts_with(root + "FraxoPro\\"))) // the others stay
                    m_machine.WriteText(
                        root == "HKEY_CLASSES_ROOT\\"   ? HKEY_CLASSES_ROOT
                        : root == "HKEY_CURRENT_USER\\" ? HKEY_CURRENT_USER
                                                        : HKEY_LOCAL_MACHINE,
                        source.place.substr(start, end - start).c_str(),
                        source.place.substr(end + 1) == "(default)" ? "" : source.place.substr(end + 1).c_str(),
                        marker);
                else
                    continue;
                ++stored;
            }
        }
        ASSERT_LT(count, 10000);
    }
    EXPECT_THAT(MakeReport(true), HasSubstr("PERSONAL-"));
    EXPECT_THAT(MakeReport(false), Not(HasSubstr("PERSONAL-")));
}

TEST_F(Report, IsComparedWholeWithFoldedFolders)
{
    Install("/opt/one");
    const std::string first = Write("first.json", MakeReport(true));
    Install("/opt/two");
    m_machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", "1");
    const std::string second = Write("second.html", MakePage(MakeReport(true)));
    EXPECT_EQ(Format(Compare(first, first)), "");
    const std::string differences = Format(Compare(first, second));
    EXPECT_THAT(differences,
                AllOf(HasSubstr("<root>\n  - /opt/one\n  + /opt/two\n"), Not(HasSubstr("GetHelpDirectory")),
                      HasSubstr("features FPRO_FEATURE_REVULYTICS\n  - 0 (off by default)\n  + 1 (environment)"),
                      HasSubstr("variables FPRO_FEATURE_REVULYTICS\n  - (none)\n  + 1\n"),
                      HasSubstr("finding: The variable FPRO_FEATURE_REVULYTICS")));
    EXPECT_THAT(MakePage(Compare(first, second)), HasSubstr("\"compared\""));

    const std::string one = Write("one.json", R"({"C": {"F": {"value": 1}, "Gone": {"error": "no"}}})");
    const std::string two = Write("two.json", R"({"C": {"F": {"value": 1}}, "D": {"New": {"value": [2]}}})");
    EXPECT_EQ(Format(Compare(one, two)), "C::Gone\n  - failed: no\n  + (not there)\n"
                                         "D::New\n  - (not there)\n  + [2]\n");
}

TEST_F(Report, MayHoldTextThatLooksLikeAPage)
{
    Install("/opt/</script><script>alert(1)</script>");
    const std::string page = MakePage(MakeReport(true));
    EXPECT_THAT(page, AllOf(Not(HasSubstr("alert(1)<")), HasSubstr(R"(\u003c/script>)")));
    EXPECT_EQ(JsonOf(page).find("alert") != std::string::npos, true);
}

TEST_F(Report, CannotBeMadeOfAnythingElse)
{
    const std::string good = Write("good.json", R"({"C": {"F": {"value": 1}}})");
    std::string deep;
    for (int i = 0; i < 80000; ++i)
        deep += R"({"a":)";
    for (const std::string& text :
         {std::string{}, std::string{"{"}, std::string{"[]"}, std::string{R"({"C": 1})"},
          std::string{R"({"C": {"F": 1}})"}, std::string{R"({"answers": []})"}, deep, std::string(80000, '[')})
        EXPECT_THAT([&] { Compare(Write("other.json", text), good); },
                    ThrowsMessage<std::runtime_error>(HasSubstr("other.json is not a report")));
    EXPECT_THAT([&] { Compare(File("nowhere"), good); }, ThrowsMessage<std::runtime_error>(HasSubstr("no such file")));
    EXPECT_THAT([&] { Compare(m_machine.Root().string(), good); },
                ThrowsMessage<std::runtime_error>(HasSubstr("it is not a file")));
}

TEST_F(Report, OfIniFilesSaysWhereTheReaderSurprises)
{
    const std::string file =
        Write("a.ini", "\xEF\xBB\xBF[A]\nk=1\n; c\nk=2 ; new\nlist=[x]\nno sign\n=v\n[B]\nk=1\nk=3\n");
    std::string text;
    for (const IniLine& line : ReadIniLines(file))
        text += std::to_string(line.number) + (line.isDamage ? "! " : " ") + line.surprise + "\n";
    EXPECT_EQ(text, "1! starts with a byte-order mark, which is taken as part of the line\n"
                    "2 a later line of this section has another value, which is used\n"
                    "4 the comment is part of the value\n"
                    "5! a value that ends in a bracket: a header of section \"ist=[x\"\n"
                    "6 ignored: neither a header nor a key with \"=\"\n"
                    "7 no key before the \"=\"\n"
                    "8 \n"
                    "9 a later line of this section has another value, which is used\n"
                    "10 \n");
}

struct CommandLine
{
    std::vector<std::string> arguments;
    int status;
    const char* shown; ///< On either stream.
};

TEST_F(Report, CommandsSayByTheirStatusWhatHappened)
{
    Install(); // a bare machine: doctor finds something
    const std::string good = Write("good.json", R"({"C": {"F": {"value": 1}}})");
    const std::string other = Write("other.json", R"({"C": {"F": {"value": 2}}})");
    const std::string ini = Write("a.ini", "[A]\nk=1\n");
    const CommandLine lines[] = {
        {{}, 0, "VersionConfig"},
        {{"GetProductKey"}, 0, "FraxoPro\n"},
        {{"GetProductKey", "--json"}, 0, "\"value\": \"FraxoPro\""},
        {{""}, 2, "there is no operation ''"},
        {{"GetFraxoProRot"}, 2, "GetFRAXOProRoot"},
        {{"GetRssFeedCategory(3)"}, 2, "GetRssFeedCategory(0)\nAn operation with an argument"},
        {{"why", "GetFRAXOProRoot", "--json"}, 0, "\"decided\": true"},
        {{"--json", "features"}, 0, "\"FPRO_FEATURE_REVULYTICS\": {"},
        {{"applications", "--json"}, 0, "\"PlanWin\""},
        {{"log", ""}, 2, "there is no program ''"},
        {{"log"}, 1, "[missing]"},
        {{"doctor", "--json"}, 1, "\"remedy\""},
        {{"--provision", "doctor"}, 2, "takes neither --provision"},
        {{"--json", "watch"}, 2, "'watch' has no --json"},
        {{"names", "--unknown"}, 2, "--unknown"},
        {{"diff", good, good}, 0, "No differences.\n"},
        {{"diff", good, other, "--json"}, 1, "\"second\": \"2\""},
        {{"diff", good, m_machine.Root().string()}, 2, "it is not a file"},
        {{"diff", good, other, ini}, 2, "exists already"},
        {{"report", good}, 2, "exists already"},
        {{"report", "-"}, 0, "\"rights\""},
        {{"report", File("none/a.json")}, 2, "cannot write"},
        {{"report", File("new.html")}, 0, "Wrote"},
        {{"report", "--force", File("new.html")}, 0, "Wrote"},
        {{"ini", ini, "A"}, 0, "k = 1\n"},
        {{"ini", ini, "B"}, 2, "there is no section 'B'"},
    };
    for (const CommandLine& line : lines)
    {
        std::vector<const char*> arguments{"fraxoinfo"};
        std::string all;
        for (const std::string& argument : line.arguments)
        {
            arguments.push_back(argument.c_str());
            all += ' ' + argument;
        }
        SCOPED_TRACE(all);
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(FraxoInfo::Run(static_cast<int>(arguments.size()), arguments.data()), line.status);
        EXPECT_THAT(::testing::internal::GetCapturedStdout() + ::testing::internal::GetCapturedStderr(),
                    HasSubstr(line.shown));
    }

    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    const char* const everything[] = {"fraxoinfo"};
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(FraxoInfo::Run(1, everything), 1) << "an operation failed";
    ::testing::internal::GetCapturedStdout();
}
} // namespace
