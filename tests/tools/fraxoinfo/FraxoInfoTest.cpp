#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Applications.h"
#include "Catalogue.h"
#include "Colour.h"
#include "Report.h"
#include "Suggestions.h"
#include "Why.h"
#include "support/Files.h"
#include "support/InstallationTest.h"

#include "PublicGetters.h" // made by the build from the public headers

namespace
{
using namespace FraxoInfo;
using namespace std::string_literals;
using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(Catalogue, HasEveryPublicGetterThatTakesNoArgument)
{
    ASSERT_GT(std::size(PublicGetters), 10U) << "the headers were not read";
    for (const std::string_view getter : PublicGetters)
        EXPECT_NE(Find(getter), nullptr) << getter << " is missing from tools/fraxoinfo/Catalogue.cpp";
    const auto takesNoArgument = [](const Operation& row) { return !row.name.ends_with(')'); };
    EXPECT_EQ(std::ranges::count_if(Catalogue(), takesNoArgument), std::ssize(PublicGetters));
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
    const std::string text = FormatApplications(FindApplications());
    EXPECT_THAT(text, HasSubstr("Lum Concept: " + program + "\n    HKEY_LOCAL_MACHINE" + place +
                                "UserFraxoLinkExePath  [missing]"
                                "\n    HKEY_CURRENT_USER" +
                                place +
                                R"(UserFraxoLinkExePath = X:\gone.exe)"
                                "\n    X:\\gone.exe  [missing]"
                                "\n  * HKEY_LOCAL_MACHINE" +
                                place + "LatestConceptExePath = " + program + "\n    " + program + "  [exists]\n"));
    EXPECT_THAT(text, HasSubstr("PlanWin: not found\n"));
}

TEST(Explanation, ListsWhatWasAskedAndMarksWhatDecided)
{
    using Source = Inquiry::Source;
    const Operation row{"C", "GetPath", Kind::Text, [] { return Value{std::string{R"(\opt\Model\de\)"}}; }};
    Explanation explanation{AskFor(row, false),
                            {{Source::Environment, "VARIABLE", {}},
                             {Source::RegistryValue, "languages", "en\0de\0\0"s},
                             {Source::RegistryValue, "language", "de\0"s},
                             {Source::RegistryValue, "other", "od\0"s},
                             {Source::Path, R"(\opt)", ""}}};
    EXPECT_EQ(FormatExplanation(explanation), "GetPath: \\opt\\Model\\de\\\n"
                                              "Asked, in this order (* decided):\n"
                                              "    VARIABLE  [not set]\n"
                                              "    languages = en, de\n"
                                              "  * language = de\n"
                                              "    other = od\n"
                                              "    \\opt  [exists]\n");
}

TEST_F(Applications, AreExplainedByWhatTheLibraryReallyAsked)
{
    const Bases bases = Install();
    const Explanation explanation = Explain(*Find("GetPluginsIniPath"));
    std::vector<std::string> places;
    for (const Inquiry& inquiry : explanation.inquiries)
        places.push_back(inquiry.place);
    EXPECT_THAT(places, ElementsAre("FRAXO_PRO_ROOT_DIRECTORY", "the shell's folder of this user's data",
                                    "FRAXO_PRO_ROOT_DIRECTORY", R"(HKEY_CLASSES_ROOT\FraxoPro\22.00.00\RootDir)",
                                    bases.userData + R"(Default\Plugins\Plugins.ini)",
                                    bases.root + R"(FRAXO\Plugins\Plugins.ini)"));
}

TEST(NearestNames, AreThoseThatWereProbablyMeant)
{
    EXPECT_EQ(NearestNames("GetFraxoProRot").front(), "GetFRAXOProRoot");
    EXPECT_THAT(NearestNames("runningfrom"), ElementsAre("IsRunningFromOutput"));
    EXPECT_THAT(NearestNames("xyzzy"), IsEmpty());
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

TEST(FormatTable, GroupsByClassAndAligns)
{
    EXPECT_EQ(FormatTable(Answers()), "First\n"
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

TEST(FormatTable, ColoursWhatIsMissingWhenAsked)
{
    UseColours(true);
    const std::string table = FormatTable(Answers());
    UseColours(false);
    EXPECT_THAT(table, HasSubstr("no\\file  \x1b[33m[missing]\x1b[0m\n"));
}

TEST(FormatJson, KeepsTypesAndSaysWhatFailed)
{
    const std::string json = FormatJson(Answers());
    EXPECT_THAT(json, HasSubstr(R"("value": -134)"));
    EXPECT_THAT(json, HasSubstr(R"("value": "a\u001b[2J\nb")"));
    EXPECT_THAT(json, ContainsRegex(R"("value": \[\s+"de",\s+"de"\s+\])"));
    EXPECT_THAT(json, HasSubstr(R"("error": "Could not")"));

    constexpr Operation binary{"C", "GetBytes", Kind::Text, [] { return Value{std::string{"\xFF"}}; }};
    EXPECT_THAT(FormatJson({AskFor(binary, false)}), HasSubstr("\xEF\xBF\xBD"));
}
} // namespace
