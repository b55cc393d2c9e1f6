#include "SupportReport.h"

#include <fstream>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/InstallationTest.h"

namespace
{
using namespace FraxoInfo;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::ThrowsMessage;

using SupportReport = InstallationTest;

TEST_F(SupportReport, LeavesOutPersonalDataWhereverItStandsUnlessAsked)
{
    m_machine.SetEnvironment("USERPROFILE", R"(C:\Users\alex7)");
    Install(R"(C:\Users\alex7\Fraxo of Kim, not Kimberley)");
    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "UserName", "Kim");
    m_machine.WriteText(HKEY_CURRENT_USER, R"(Software\Quenlor\Support)", "UserEmail", "kim@example.com");
    UseProject("harbour-7", true);

    EXPECT_THAT(MakeSupportReport(true),
                AllOf(HasSubstr("harbour-7"), HasSubstr("kim@example.com"), HasSubstr("alex7"), HasSubstr("Kim,")));
    EXPECT_THAT(MakeSupportReport(false),
                AllOf(Not(HasSubstr("harbour-7")), Not(HasSubstr("kim@example.com")), Not(HasSubstr("alex7")),
                      HasSubstr(R"(C:\\Users\\<account>\\Fraxo of <user name>, not Kimberley\\)"),
                      HasSubstr(R"(\\<project id>\\)")));
}

TEST_F(SupportReport, IsComparedAnswerByAnswer)
{
    const auto write = [this](const char* name, const std::string& text)
    {
        WriteFile(m_machine.Root() / name, text);
        return (m_machine.Root() / name).string();
    };
    const std::string first = write("first.json", MakeSupportReport(true));
    Install("/opt/fraxo");
    const std::string second = write("second.json", MakeSupportReport(true));
    EXPECT_EQ(CompareReports(first, first), "");
    EXPECT_THAT(CompareReports(first, second), HasSubstr("DirectoryConfig::GetFRAXOProRoot\n"
                                                         "  -   [missing]\n"
                                                         "  + /opt/fraxo\\  [missing]\n"));

    const std::string one = write("one.json", R"({"C": {"F": {"value": 1}, "Gone": {"error": "no"}}})");
    const std::string two = write("two.json", R"({"C": {"F": {"value": 1}}, "D": {"New": {"value": [2]}}})");
    EXPECT_EQ(CompareReports(one, two), "C::Gone\n  - failed: no\n  + (not asked)\n"
                                        "D::New\n  - (not asked)\n  + [2]\n");

    for (const char* const text : {"", "{", "[]", R"({"C": 1})", R"({"C": {"F": 1}})", R"({"answers": []})"})
        EXPECT_THAT([&] { CompareReports(write("other.json", text), one); },
                    ThrowsMessage<std::runtime_error>(HasSubstr("other.json is no report")))
            << text;
    EXPECT_THAT([&] { CompareReports("nowhere.json", one); },
                ThrowsMessage<std::runtime_error>(HasSubstr("cannot read nowhere.json")));
}
} // namespace
