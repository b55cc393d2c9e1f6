#include <gmock/gmock.h>

#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Applications.h"
#include "Json.h"
#include "Terminal.h"
#include "Watch.h"
#include "support/Files.h"
#include "support/InstallationTest.h"

namespace
{
using namespace FraxoInfo;
using namespace std::string_literals;
using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

TEST(Catalogue, IsMadeOfThePublicHeaders)
{
    EXPECT_GT(Catalogue().size(), 140U);
    for (const auto& [name, kind] : {std::pair{"GetHelpDirectory", Kind::Directory},
                                     {"GetFRAXOProRoot", Kind::Directory},
                                     {"GetGBSteelDesignDirectory", Kind::Directory}, // its comment names another
                                     {"GetFraxoProIniPath", Kind::File},
                                     {"GetInstalledLanguages", Kind::List},
                                     {"GetFraxoFoundationExePath(true)", Kind::File},
                                     {"GetLangId", Kind::Number},
                                     {"IsRssFeedEnabled", Kind::Flag},
                                     {"GetCodeDescriptionDir", Kind::Text}})
        EXPECT_EQ(Find(name)->kind, kind) << name;
}

TEST(Catalogue, FindsAnOperationAloneAndBehindItsClass)
{
    ASSERT_NE(Find("GetProductKey"), nullptr);
    EXPECT_EQ(Find("VersionConfig::GetProductKey"), Find("GetProductKey"));
    EXPECT_EQ(Find("DirectoryConfig::GetProductKey"), nullptr);
}

using Applications = InstallationTest;

TEST_F(Applications, TellWhatWasAskedAndWhichPlaceDecided)
{
    constexpr char Key[] = R"(SOFTWARE\Lum International\Lum Concept\Integration)";
    const std::string program = m_machine.Folder("Lum Concept") + "Concept.exe";
    WriteFile(NativePath(program), "program");
    m_machine.WriteText(HKEY_CURRENT_USER, Key, "UserFraxoLinkExePath", R"(X:\gone.exe)");
    m_machine.WriteText(HKEY_LOCAL_MACHINE, Key, "LatestConceptExePath", program);

    const std::string place = R"(\SOFTWARE\Lum International\Lum Concept\Integration\)";
    const std::string text = Format(FindApplications());
    EXPECT_THAT(text, HasSubstr("Lum Concept: " + program + "  [exists]\n    HKEY_LOCAL_MACHINE" + place +
                                "UserFraxoLinkExePath  [missing]"
                                "\n    HKEY_CURRENT_USER" +
                                place +
                                R"(UserFraxoLinkExePath = X:\gone.exe)"
                                "\n    X:\\gone.exe  [missing]"
                                "\n  * HKEY_LOCAL_MACHINE" +
                                place + "LatestConceptExePath = " + program + "\n    " + program + "  [exists]\n"));
    EXPECT_THAT(text, HasSubstr("PlanWin: not found\n"));
}

TEST(Explanation, ListsSourcesAndMarksThoseThatDecided)
{
    using Kind = Source::Kind;
    const Operation row{"C", "GetPath", FraxoInfo::Kind::Text, [] { return Value{std::string{R"(\opt\)"}}; }};
    Answer answer = AskFor(row, false);
    EXPECT_EQ(Explain(answer), "GetPath: \\opt\\\nFixed: nothing was asked.\n");
    answer.trace = {{Kind::Environment, "VARIABLE", {}},
                    {Kind::RegistryValue, "languages", "en\0de\0\0"s},
                    {Kind::RegistryValue, "language", "de\0"s, true},
                    {Kind::RegistryValue, "other", {}, false, "REG_DWORD, text expected"},
                    {Kind::Path, R"(\opt)", ""}};
    EXPECT_EQ(Explain(answer), "GetPath: \\opt\\\n"
                               "Asked, in this order (* decided):\n"
                               "    VARIABLE  [not set]\n"
                               "    languages = en, de\n"
                               "  * language = de\n"
                               "    other  [REG_DWORD, text expected]\n"
                               "    \\opt  [exists]\n");
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

TEST_F(Applications, AreExplainedByWhatTheLibraryReallyAsked)
{
    const Bases bases = Install();
    std::vector<std::string> places;
    for (const Source& source : AskFor(*Find("GetPluginsIniPath"), false).trace)
        places.push_back(source.place);
    EXPECT_THAT(places,
                ElementsAre("FRAXO_PRO_ROOT_DIRECTORY", "the shell's folder of this user's data",
                            "FRAXO_PRO_ROOT_DIRECTORY", R"(HKEY_CLASSES_ROOT\)" + InstallationKey + R"(\RootDir)",
                            bases.userData + R"(Default\Plugins\Plugins.ini)",
                            bases.root + R"(FRAXO\Plugins\Plugins.ini)"));
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
}

TEST_F(Applications, SayWhatIsThereWhenAValueCannotBeUsed)
{
    const std::string settings = SettingsKey + R"(\Configurations)";
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
}

constexpr Operation Rows[] = {
    {"First", "GetText", Kind::Text, [] { return Value{std::string{"a\x1b[2J\nb"}}; }},
    {"First", "GetNumber", Kind::Number, [] { return Value{std::int64_t{-134}}; }},
    {"First", "GetList", Kind::List, [] { return Value{std::vector(2, std::string{"de"})}; }},
    {"Second", "GetNothing", Kind::Text, [] { return Value{std::string{}}; }},
    {"Second", "GetHereDirectory", Kind::Directory, [] { return Value{std::string{"."}}; }},
    {"Second", "GetNowherePath", Kind::File, [] { return Value{std::string{"no\\file"}}; }},
    {"Second", "GetFailure", Kind::Directory, []() -> Value { throw std::runtime_error("Could not"); }},
};

std::vector<Answer> Answers()
{
    std::vector<Answer> answers;
    for (const Operation& row : Rows)
        answers.push_back(AskFor(row, false));
    return answers;
}

TEST(ToText, IsTheBareValue)
{
    EXPECT_EQ(ToText(Value{std::vector<std::string>{"a b", "c"}}), "a b\nc");
}

TEST(Answers, GroupsByClassAndAligns)
{
    EXPECT_EQ(Format(Answers()), "First\n"
                                 "  GetText           a\\x1b[2J\\x0ab\n"
                                 "  GetNumber         -134\n"
                                 "  GetList           de de\n"
                                 "\n"
                                 "Second\n"
                                 "  GetNothing        (empty)\n"
                                 "  GetHereDirectory  .  [exists]\n"
                                 "  GetNowherePath    no\\file  [missing]\n"
                                 "  GetFailure        failed: Could not\n");
}

TEST(Answers, ColoursWhatIsMissingWhenAsked)
{
    UseColours(true);
    const std::string table = Format(Answers());
    UseColours(false);
    EXPECT_THAT(table, HasSubstr("no\\file  \x1b[33m[missing]\x1b[0m\n"));
}

TEST(Json, KeepsTypesAndSaysWhatFailed)
{
    const std::string json = ToJson(Answers());
    EXPECT_THAT(json, HasSubstr(R"("value": -134)"));
    EXPECT_THAT(json, HasSubstr(R"("value": "a\u001b[2J\nb")"));
    constexpr Operation control{"C", "GetText", Kind::Text, [] { return Value{std::string{"\x7F\xC2\x9B"}}; }};
    EXPECT_THAT(ToJson(std::vector{AskFor(control, false)}), HasSubstr(R"("\u007f\u009b")"));
    EXPECT_THAT(json, ContainsRegex(R"("value": \[\s+"de",\s+"de"\s+\])"));
    EXPECT_THAT(json, HasSubstr(R"("error": "Could not")"));

    constexpr Operation binary{"C", "GetBytes", Kind::Text, [] { return Value{std::string{"\xFF"}}; }};
    EXPECT_THAT(ToJson(std::vector{AskFor(binary, false)}), HasSubstr("\xEF\xBF\xBD"));
}
} // namespace
