#include <gmock/gmock.h>

#include <cstdint>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "Commands.h"
#include "Json.h"
#include "Watch.h"
#include "support/Files.h"
#include "support/InstallationTest.h"

namespace
{
using namespace FraxoInfo;
using namespace std::string_literals;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;

using Answers = InstallationTest;

TEST_F(Answers, AreWatched)
{
    const Operation& operation = *Find("GetApplicationTheme");
    const std::vector<Answer> before{AskFor(operation, false)};
    m_machine.WriteText(HKEY_CURRENT_USER, SettingsKey + R"(\Configurations)", "ThemeColor", "Dark");
    const std::vector<Answer> after{AskFor(operation, false)};
    EXPECT_EQ(Changes(after, after, "12:00:00"), "");
    EXPECT_EQ(Changes(before, after, "12:00:00"),
              "12:00:00  GetApplicationTheme: (empty) -> Dark\n          HKEY_CURRENT_USER\\" + SettingsKey +
                  "\\Configurations\\ThemeColor = Dark\n");
}

TEST_F(Answers, OfAllTypesAreShownAndKeptInJson)
{
    static constexpr Operation rows[] = {
        {"First", "GetText", Kind::Text, [] { return Value{"a\x1b[2J\nb\x7F\xC2\x9B\xFF"s}; }}, // hostile
        {"First", "GetNumber", Kind::Number, [] { return Value{std::int64_t{-134}}; }},
        {"First", "GetList", Kind::List, [] { return Value{std::vector(2, "de"s)}; }},
        {"Second", "GetHereDirectory", Kind::Directory, [] { return Value{"."s}; }},
        {"Second", "GetNowherePath", Kind::File, [] { return Value{R"(no\file)"s}; }},
        {"Second", "GetFailure", Kind::Directory, []() -> Value { throw std::runtime_error("Could not"); }},
    };
    std::vector<Answer> answers;
    for (const Operation& row : rows)
        answers.push_back(AskFor(row, false));
    EXPECT_EQ(Format(answers), R"(First
  GetText           a\x1b[2J\x0ab\x7f\x9b\xff
  GetNumber         -134
  GetList           de de

Second
  GetHereDirectory  .  [exists]
  GetNowherePath    no\file  [missing]
  GetFailure        failed: Could not
)");
    EXPECT_THAT(Dump(answers), AllOf(HasSubstr("\"value\": \"a\\u001b[2J\\nb\\u007f\\u009b\xEF\xBF\xBD\""),
                                     HasSubstr(R"("value": -134)"), ContainsRegex(R"("value": \[\s+"de",\s+"de"\s+\])"),
                                     HasSubstr(R"("error": "Could not")")));
}

class Report : public InstallationTest
{
protected:
    std::string Write(const char* name, const std::string& text) const
    {
        WriteFile(m_machine.Root() / name, text);
        return (m_machine.Root() / name).string();
    }
};

TEST_F(Report, LeavesOutPersonalDataUnlessAsked)
{
    m_machine.SetEnvironment("USERPROFILE", R"(C:\Users\alex7\)");
    m_machine.SetEnvironment("LOGNAME", "logan");
    Install("C:\\Users\\ALEX7\\Fraxo of K\xC3\x84M, not K\xC3\xA4mberley, and logan");
    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "UserName", "K\xC3\xA4m");
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor\Support)", "UserEmail", "kim@example.com");
    m_machine.WriteText(HKEY_CURRENT_USER, SettingsKey + R"(\Configurations)", "DefaultProjectName", "Tower");
    UseProject("harbour-7", true);

    const std::string report = MakeReport(false);
    for (const char* const personal : {"harbour-7", "kim@example.com", "Tower", "alex7", "ALEX7", "\xC3\x84M", "logan"})
        EXPECT_THAT(report, Not(HasSubstr(personal)));
    EXPECT_THAT(report, AllOf(HasSubstr("\\<account>\\\\Fraxo of <user name>, not K\xC3\xA4mberley, and <account>\\"),
                              HasSubstr(R"(\\<project id>\\)"), HasSubstr("\"<project name>\"")));
}

TEST_F(Report, LeavesOutEveryStoredTextOfNoKnownForm)
{
    // Stores a marker wherever the library looks, as long as that leads to places that it has not asked before.
    int count = 0;
    for (bool isNew = true; isNew;)
    {
        isNew = false;
        for (const Answer& answer : AskForEverything(false))
        {
            for (const Source& source : answer.trace)
            {
                const std::string marker = "PERSONAL-" + std::to_string(++count);
                const std::size_t start = source.place.find('\\') + 1, end = source.place.rfind('\\');
                const std::string root = source.place.substr(0, start), name = source.place.substr(end + 1);
                if (source.kind == Source::Kind::Environment && source.place != "FRAXO_PRO_ROOT_DIRECTORY")
                    m_machine.SetEnvironment(source.place, marker);
                // Keys of other products in the common root stay.
                if (source.kind != Source::Kind::RegistryValue || source.held || !source.problem.empty() ||
                    (root == "HKEY_CLASSES_ROOT\\" && !source.place.starts_with(root + "FraxoPro\\")))
                    continue;
                isNew = true;
                m_machine.WriteText(root == "HKEY_CLASSES_ROOT\\"   ? HKEY_CLASSES_ROOT
                                    : root == "HKEY_CURRENT_USER\\" ? HKEY_CURRENT_USER
                                                                    : HKEY_LOCAL_MACHINE,
                                    source.place.substr(start, end - start).c_str(),
                                    name == "(default)" ? "" : name.c_str(), marker);
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
    Install("/opt/two</script>");
    m_machine.SetEnvironment("FPRO_FEATURE_REVULYTICS", "1");
    const std::string second = Write("second.html", MakePage(MakeReport(true)));
    EXPECT_THAT(Format(Compare(first, second)),
                AllOf(HasSubstr("<root>\n  - /opt/one\n  + /opt/two</script>\n"), Not(HasSubstr("GetHelpDirectory")),
                      HasSubstr("features FPRO_FEATURE_REVULYTICS\n  - 0 (off by default)\n  + 1 (environment)"),
                      HasSubstr("variables FPRO_FEATURE_REVULYTICS\n  - (none)\n  + 1\n"),
                      HasSubstr("finding: The variable FPRO_FEATURE_REVULYTICS")));
}

TEST_F(Report, CommandsSayByTheirStatusWhatHappened)
{
    const std::string chosen = VendorKey + R"(\Language)";
    Install();
    m_machine.WriteText(HKEY_CURRENT_USER, chosen, "CurrentLanguage", "fr"); // not installed
    m_machine.WriteText(HKEY_LOCAL_MACHINE, chosen, "DefaultLanguage", "en");
    const std::string good = Write("good.json", R"({"C": {"F": {"value": 1}, "G": {"error": "no"}}})");
    const std::string other = Write("other.json", R"({"C": {"F": {"value": 2}}})");
    const std::string deep =
        Write("deep.json", std::regex_replace(std::string(80000, '.'), std::regex{"[.]"}, R"({"a":)"));
    const std::string ini = Write("a.ini", "\xEF\xBB\xBF[A]\n; c\nk=2 ; new\nlist=[x]\nno sign\n[B]\nk=1\nk=3\n");
    const auto run = [](const std::vector<std::string>& arguments, int status, const std::string& shown)
    {
        std::vector<const char*> words{"fraxoinfo"};
        for (const std::string& argument : arguments)
            words.push_back(argument.c_str());
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(FraxoInfo::Run(static_cast<int>(words.size()), words.data()), status) << shown;
        EXPECT_THAT(::testing::internal::GetCapturedStdout() + ::testing::internal::GetCapturedStderr(),
                    HasSubstr(shown));
    };
    run({"why", "GetCurrentLanguage"}, 0, "= fr\n  * HKEY_LOCAL_MACHINE\\" + chosen + "\\DefaultLanguage = en\n");
    run({"why", "GetCurrentLanguage", "--json"}, 0, "\"decided\": true");
    run({}, 0, "VersionConfig");
    run({"VersionConfig::GetProductKey"}, 0, "FraxoPro\n");
    run({"GetProductKey", "--json"}, 0, "\"value\": \"FraxoPro\"");
    run({"GetFraxoProRot"}, 2, "Did you mean:\n  GetFRAXOProRoot");
    run({"--json", "features"}, 0, "\"FPRO_FEATURE_REVULYTICS\": {");
    run({"applications", "--json"}, 0, "\"PlanWin\"");
    run({"applications"}, 0, "PlanWin: not found\n    HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\BuildingPlanner\\");
    run({"log"}, 1, "[missing]");
    run({"doctor", "--json"}, 1, "\"remedy\""); // on a machine that has nothing else
    run({"--provision", "doctor"}, 2, "doctor excludes --provision");
    run({"diff", good, good}, 0, "No differences.\n");
    run({"diff", good, other}, 1, "C::F\n  - 1\n  + 2\nC::G\n  - failed: no\n  + (not there)\n");
    run({"diff", good, m_machine.Root().string()}, 2, "it is not a file");
    run({"diff", good, deep}, 2, "deep.json is not a report");
    run({"diff", good, other, ini}, 2, "already exists");
    run({"diff", good, other, "-"}, 1, "\"second\": \"2\"");
    run({"report", "-"}, 0, "\"rights\"");
    run({"report", good + "/a.json"}, 2, "cannot write");
    run({"report", good + ".html"}, 0, "Wrote");
    run({"report", good + ".html"}, 2, "already exists");
    run({"ini", ini, "B"}, 1, "[B]");
    run({"ini", ini, "C"}, 2, "the file has no section 'C'");
    run({"ini", ini}, 1, R"(!     1  [\xbb\xbf[A]
         starts with a byte-order mark, which is read as part of the line
!     3  k = 2 ; new
         the comment is read as part of the value
!     4  [ist=[x]
         a value that ends in a bracket: read as the header of section "ist=[x"
!     5  no sign
         ignored: neither a header nor a key with "="
      6  [B]
!     7  k = 1
         not used: a later line of this section has another value
      8  k = 3
)");
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    run({}, 1, "failed: Could not get ProgramData folder");
}
} // namespace
