#include <gmock/gmock.h>

#include <cstdint>
#include <regex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Applications.h"
#include "Commands.h"
#include "Json.h"
#include "Terminal.h"
#include "Watch.h"
#include "support/Files.h"
#include "support/InstallationTest.h"

namespace
{
using namespace FraxoInfo;
using namespace std::string_literals;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::ThrowsMessage;
using ::testing::UnorderedElementsAre;

TEST(Catalogue, IsMadeOfThePublicHeaders)
{
    EXPECT_GT(Catalogue().size(), 140U);
    for (const auto& [name, kind] : {std::pair{"GetHelpDirectory", Kind::Directory},
                                     {"GetGBSteelDesignDirectory", Kind::Directory}, // its comment names another
                                     {"GetFraxoProIniPath", Kind::File},
                                     {"GetInstalledLanguages", Kind::List},
                                     {"GetFraxoFoundationExePath(true)", Kind::File},
                                     {"IsRssFeedEnabled", Kind::Flag},
                                     {"GetCodeDescriptionDir", Kind::Text}})
        EXPECT_EQ(Find(name)->kind, kind) << name;
    EXPECT_EQ(Find("VersionConfig::GetProductKey"), Find("GetProductKey"));
    EXPECT_EQ(Find("DirectoryConfig::GetProductKey"), nullptr);
}

using Applications = InstallationTest;

TEST_F(Applications, ShowWhatWasAskedAndWhatDecided)
{
    constexpr char Key[] = R"(SOFTWARE\Lum International\Lum Concept\Integration)";
    const std::string program = m_machine.Folder("Lum Concept") + "Concept.exe";
    WriteFile(NativePath(program), "program");
    m_machine.WriteText(HKEY_CURRENT_USER, Key, "UserFraxoLinkExePath", R"(X:\gone.exe)");
    m_machine.WriteText(HKEY_LOCAL_MACHINE, Key, "LatestConceptExePath", program);
    const std::string text =
        std::regex_replace(Format(FindApplications()), std::regex{R"(\\SOFTWARE.*Integration)"}, "");
    EXPECT_THAT(text, HasSubstr("Lum Concept: " + program + "  [exists]\n" +
                                R"(    HKEY_LOCAL_MACHINE\UserFraxoLinkExePath  [missing]
    HKEY_CURRENT_USER\UserFraxoLinkExePath = X:\gone.exe
    X:\gone.exe  [missing]
  * HKEY_LOCAL_MACHINE\LatestConceptExePath = )" +
                                program + "\n    " + program + "  [exists]\n"));
    EXPECT_THAT(text, HasSubstr("PlanWin: not found\n"));
}

/// The places that decided, in order.
std::vector<std::string> Deciding(std::string_view operation)
{
    std::vector<std::string> places;
    for (const Source& source : AskFor(*Find(operation), false).trace)
    {
        if (source.decided)
            places.push_back(source.place);
    }
    return places;
}

TEST_F(Applications, MarkOnlyWhatWentIntoTheAnswer)
{
    const std::string settings = SettingsKey + R"(\Configurations)";
    const std::string chosen = VendorKey + R"(\Language)";
    const std::string user = R"(HKEY_CURRENT_USER\)";
    Install("/de"); // which the language's text is part of
    m_machine.WriteData(HKEY_CLASSES_ROOT, InstallationKey + R"(\Language)", "InstalledLanguages", REG_MULTI_SZ,
                        "de\0\0"s);
    m_machine.WriteText(HKEY_CURRENT_USER, chosen, "CurrentLanguage", "fr"); // not installed
    m_machine.WriteText(HKEY_LOCAL_MACHINE, chosen, "DefaultLanguage", "de");
    EXPECT_THAT(Deciding("GetCurrentLanguage"), ElementsAre(R"(HKEY_LOCAL_MACHINE\)" + chosen + R"(\DefaultLanguage)"));
    EXPECT_THAT(Deciding("GetCurrentLanguageDirectory"),
                UnorderedElementsAre(R"(HKEY_CLASSES_ROOT\)" + InstallationKey + R"(\RootDir)",
                                     "the language that this process chose at first"));
    UseProject("bridge", false);
    EXPECT_THAT(Deciding("GetProjectConfigurationDirectory"),
                ElementsAre(user + settings + R"(\UseDefaultProject)", "the shell's folder of this user's data"));
    m_machine.WriteText(HKEY_CURRENT_USER, settings, "ThemeFont", "Arial");
    EXPECT_THAT(Deciding("GetApplicationFont"), ElementsAre(user + settings + R"(\ThemeFont)"));
    m_machine.WriteText(HKEY_CURRENT_USER, settings, "UseRoamingProjectConfig", "on"); // no number: the default
    EXPECT_THAT(Deciding("UseRoamingProjectConfig"), IsEmpty());
    m_machine.WriteNumber(HKEY_CURRENT_USER, settings, "ThemeColor", 1);
    m_machine.WriteText(HKEY_CURRENT_USER, settings, "UseDefaultProject", "a long text");
    EXPECT_THAT(Explain(AskFor(*Find("GetApplicationTheme"), false)),
                HasSubstr(R"(\ThemeColor  [REG_DWORD, text expected])"));
    EXPECT_THAT(Explain(AskFor(*Find("UseDefaultConnectedProject"), false)),
                HasSubstr(R"(\UseDefaultProject  [REG_SZ, a number expected])"));
}

TEST_F(Applications, AreWatched)
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

TEST(NearestNames, AreThoseThatWereProbablyMeant)
{
    const std::vector<std::string> names{"GetFRAXOProRoot", "IsRunningFromOutput"};
    EXPECT_THAT(NearestNames("GetFraxoProRot", names), ElementsAre("GetFRAXOProRoot"));
    EXPECT_THAT(NearestNames("runningfrom", names), ElementsAre("IsRunningFromOutput"));
    EXPECT_THAT(NearestNames("xyzzy", names), IsEmpty());
    EXPECT_THAT(NearestNames("", names), IsEmpty());
}

/// Of all types, and hostile.
std::vector<Answer> Answers()
{
    static constexpr Operation rows[] = {
        {"First", "GetText", Kind::Text, [] { return Value{"a\x1b[2J\nb\x7F\xC2\x9B\xFF"s}; }},
        {"First", "GetNumber", Kind::Number, [] { return Value{std::int64_t{-134}}; }},
        {"First", "GetList", Kind::List, [] { return Value{std::vector(2, "de"s)}; }},
        {"Second", "GetNothing", Kind::Text, [] { return Value{""s}; }},
        {"Second", "GetHereDirectory", Kind::Directory, [] { return Value{"."s}; }},
        {"Second", "GetNowherePath", Kind::File, [] { return Value{R"(no\file)"s}; }},
        {"Second", "GetFailure", Kind::Directory, []() -> Value { throw std::runtime_error("Could not"); }},
    };
    std::vector<Answer> answers;
    for (const Operation& row : rows)
        answers.push_back(AskFor(row, false));
    return answers;
}

TEST(Answers, AreGroupedAlignedAndColoured)
{
    UseColours(true);
    const std::string table = Format(Answers());
    UseColours(false);
    EXPECT_THAT(table, HasSubstr("no\\file  \x1b[33m[missing]\x1b[0m\n"));
    EXPECT_EQ(Format(Answers()), R"(First
  GetText           a\x1b[2J\x0ab\x7f\x9b\xff
  GetNumber         -134
  GetList           de de

Second
  GetNothing        (empty)
  GetHereDirectory  .  [exists]
  GetNowherePath    no\file  [missing]
  GetFailure        failed: Could not
)");
}

TEST(Answers, KeepTheirTypesInJson)
{
    const std::string json = Dump(Answers());
    EXPECT_THAT(json, HasSubstr(R"("value": "a\u001b[2J\nb\u007f\u009b)"
                                "\xEF\xBF\xBD\""));
    EXPECT_THAT(json, HasSubstr(R"("value": -134)"));
    EXPECT_THAT(json, ContainsRegex(R"("value": \[\s+"de",\s+"de"\s+\])"));
    EXPECT_THAT(json, HasSubstr(R"("error": "Could not")"));
}
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

/// Stores the text where the library looked in vain. @return whether it can
bool Store(const ScratchMachine& machine, const Source& source, const std::string& text)
{
    const std::size_t start = source.place.find('\\') + 1, end = source.place.rfind('\\');
    const std::string root = source.place.substr(0, start), name = source.place.substr(end + 1);
    // Keys of other products in the common root stay.
    if (source.kind != Source::Kind::RegistryValue || source.held || !source.problem.empty() ||
        (root == "HKEY_CLASSES_ROOT\\" && !source.place.starts_with(root + "FraxoPro\\")))
        return false;
    machine.WriteText(root == "HKEY_CLASSES_ROOT\\"   ? HKEY_CLASSES_ROOT
                      : root == "HKEY_CURRENT_USER\\" ? HKEY_CURRENT_USER
                                                      : HKEY_LOCAL_MACHINE,
                      source.place.substr(start, end - start).c_str(), name == "(default)" ? "" : name.c_str(), text);
    return true;
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
                if (source.kind == Source::Kind::Environment && source.place != "FRAXO_PRO_ROOT_DIRECTORY")
                    m_machine.SetEnvironment(source.place, marker);
                isNew |= Store(m_machine, source, marker);
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
    EXPECT_EQ(Format(Compare(first, first)), "No differences.\n");
    const std::string differences = Format(Compare(first, second));
    EXPECT_THAT(differences,
                AllOf(HasSubstr("<root>\n  - /opt/one\n  + /opt/two\n"), Not(HasSubstr("GetHelpDirectory")),
                      HasSubstr("features FPRO_FEATURE_REVULYTICS\n  - 0 (off by default)\n  + 1 (environment)"),
                      HasSubstr("variables FPRO_FEATURE_REVULYTICS\n  - (none)\n  + 1\n"),
                      HasSubstr("finding: The variable FPRO_FEATURE_REVULYTICS")));
    const std::string one = Write("one.json", R"({"C": {"F": {"value": 1}, "Gone": {"error": "no"}}})");
    const std::string two = Write("two.json", R"({"C": {"F": {"value": 1}}, "D": {"New": {"value": [2]}}})");
    EXPECT_EQ(Format(Compare(one, two)), "C::Gone\n  - failed: no\n  + (not there)\n"
                                         "D::New\n  - (not there)\n  + [2]\n");
}

TEST_F(Report, MayHoldTextThatLooksLikeAPage)
{
    const std::string json = R"({"root": "</script><script>alert(1)</script>"})", page = MakePage(json);
    EXPECT_THAT(page, AllOf(Not(HasSubstr("alert(1)<")), HasSubstr(R"(\u003c/script>)")));
    EXPECT_THAT(JsonOf(page), HasSubstr("alert"));
}

TEST_F(Report, IsRefusedWhenItIsAnythingElse)
{
    const std::string good = Write("good.json", R"({"C": {"F": {"value": 1}}})");
    const std::string deep = std::regex_replace(std::string(80000, '.'), std::regex{"[.]"}, R"({"a":)");
    for (const std::string text : {"", "{", "[]", R"({"C": 1})", R"({"C": {"F": 1}})", R"({"answers": []})",
                                   deep.c_str(), "[[[[[[[[[[[[[[[[[[[[[[["})
        EXPECT_THAT([&] { Compare(Write("other.json", text), good); },
                    ThrowsMessage<std::runtime_error>(HasSubstr("other.json is not a report")));
}

TEST_F(Report, OfIniFilesSaysWhereTheReaderSurprises)
{
    const std::string file =
        Write("a.ini", "\xEF\xBB\xBF[A]\nk=1\n; c\nk=2 ; new\nlist=[x]\nno sign\n=v\n[B]\nk=1\nk=3\n");
    std::string text;
    for (const IniLine& line : ReadIniLines(file))
        text += std::to_string(line.number) + (line.isDamage ? "! " : " ") + line.surprise + "\n";
    EXPECT_EQ(text, R"(1! starts with a byte-order mark, which is read as part of the line
2 not used: a later line of this section has another value
4 the comment is read as part of the value
5! a value that ends in a bracket: read as the header of section "ist=[x"
6 ignored: neither a header nor a key with "="
7 no key before the "="
8 
9 not used: a later line of this section has another value
10 
)");
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
    m_machine.WriteData(HKEY_CLASSES_ROOT, InstallationKey + R"(\Language)", "InstalledLanguages", REG_MULTI_SZ,
                        {"de\0en\0", 7});
    const std::string good = Write("good.json", R"({"C": {"F": {"value": 1}}})");
    const std::string other = Write("other.json", R"({"C": {"F": {"value": 2}}})");
    const std::string ini = Write("a.ini", "[A]\nk=1\n");
    const CommandLine lines[] = {
        {{"why", "GetInstalledLanguages"}, 0, "InstalledLanguages = de, en\n"}, // before others: it is remembered
        {{"why", "GetFRAXOProRoot"}, 0, "(* decided):\n    FRAXO_PRO_ROOT_DIRECTORY  [not set]\n  * HKEY_"},
        {{}, 0, "VersionConfig"},
        {{"GetProductKey"}, 0, "FraxoPro\n"},
        {{"GetProductKey", "--json"}, 0, "\"value\": \"FraxoPro\""},
        {{""}, 2, "the operation '' is unknown"},
        {{"GetFraxoProRot"}, 2, "GetFRAXOProRoot"},
        {{"GetRssFeedCategory(3)"}, 2, "GetRssFeedCategory(0)\nAn operation with an argument"},
        {{"why", "GetFRAXOProRoot", "--json"}, 0, "\"decided\": true"},
        {{"why", "GetProductKey"}, 0, ": FraxoPro\nFixed: nothing was asked.\n"},
        {{"--json", "features"}, 0, "\"FPRO_FEATURE_REVULYTICS\": {"},
        {{"applications", "--json"}, 0, "\"PlanWin\""},
        {{"log", ""}, 2, "the program '' does not exist"},
        {{"log"}, 1, "[missing]"},
        {{"doctor", "--json"}, 1, "\"remedy\""},
        {{"--provision", "doctor"}, 2, "doctor excludes --provision"},
        {{"GetProductKey", "names"}, 2, "names excludes OPERATION"},
        {{"--json", "watch"}, 2, "watch excludes --json"},
        {{"names", "--unknown"}, 2, "--unknown"},
        {{"diff", good, good}, 0, "No differences.\n"},
        {{"diff", good, other, "--json"}, 1, "\"second\": \"2\""},
        {{"diff", good, m_machine.Root().string()}, 2, "it is not a file"},
        {{"diff", good, File("nowhere")}, 2, "it does not exist"},
        {{"diff", good, other, ini}, 2, "already exists"},
        {{"diff", good, other, "-"}, 1, "\"second\": \"2\""},
        {{"diff", good, good, File("same.html")}, 0, "Wrote"},
        {{"report", good}, 2, "already exists"},
        {{"report", "-"}, 0, "\"rights\""},
        {{"report", File("none/a.json")}, 2, "cannot write"},
        {{"report", File("new.html")}, 0, "Wrote"},
        {{"report", "--force", File("new.html")}, 0, "Wrote"},
        {{"ini", ini, "A"}, 0, "k = 1\n"},
        {{"ini", ini, "B"}, 2, "the file has no section 'B'"},
        {{"ini", ini, ""}, 2, "the file has no section ''"},
    };
    const auto run = [](const CommandLine& line)
    {
        std::vector<const char*> arguments{"fraxoinfo"};
        for (const std::string& argument : line.arguments)
            arguments.push_back(argument.c_str());
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(FraxoInfo::Run(static_cast<int>(arguments.size()), arguments.data()), line.status) << line.shown;
        EXPECT_THAT(::testing::internal::GetCapturedStdout() + ::testing::internal::GetCapturedStderr(),
                    HasSubstr(line.shown));
    };
    for (const CommandLine& line : lines)
        run(line);
    EXPECT_THAT(ReadFile(File("same.html")), HasSubstr("\"compared\""));
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    run({{}, 1, "failed: Could not get ProgramData folder"});
}
} // namespace
