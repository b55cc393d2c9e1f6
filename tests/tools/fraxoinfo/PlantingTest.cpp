#include <cstring>
#include <filesystem>
#include <regex>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>

#include "Answer.h"
#include "SettledOperations.h"
#include "support/Files.h"
#include "support/InstallationTest.h"

// What the library must not answer, even when others write a folder or set a variable.

namespace
{
using namespace FraxoInfo;
namespace fs = std::filesystem;
using ::testing::AnyOf;
using ::testing::Eq;

/// The relative files and folders among the answers.
std::vector<std::string> RelativePaths(const std::vector<Answer>& answers)
{
    std::vector<std::string> paths;
    for (const Answer& answer : answers)
    {
        const auto* const path = std::get_if<std::string>(&answer.value);
        if (answer.exists && path && !path->empty() && !std::strchr("\\/", path->front()) && path->find(':') != 1)
            paths.push_back(*path);
    }
    return paths;
}

class Planting : public InstallationTest
{
protected:
    ~Planting() override { fs::current_path(m_before); }

    const fs::path m_before = fs::current_path();
};

TEST_F(Planting, InTheCurrentFolderAndPathChangesNoAnswer)
{
    const fs::path planted = m_machine.Root() / "planted";
    const fs::path empty = m_machine.Root() / "empty";
    fs::create_directories(empty);
    fs::current_path(empty);
    const std::vector<std::string> relative = RelativePaths(AskForEverything(false));
    ASSERT_FALSE(relative.empty()) << "without a record everything below the root is relative";
    for (const std::string& path : relative)
        fs::create_directories(planted / NativePath(path));
    fs::current_path(planted);
    EXPECT_THAT(RelativePaths(AskForEverything(false)), Eq(relative)) << "the paths stay the same all the same";

    Install();
    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "SampleDir", m_machine.Folder("Samples"));
    m_machine.SetEnvironment("PATH", planted.string());
    const auto inPlanted = AskForEverything(false);
    fs::current_path(empty);
    m_machine.SetEnvironment("PATH", empty.string());
    const auto inEmpty = AskForEverything(false);
    EXPECT_THAT(RelativePaths(inEmpty), ::testing::IsEmpty());
    ExpectSameValues(inPlanted, inEmpty);
    for (std::size_t i = 0; i < inEmpty.size(); ++i)
        EXPECT_TRUE(inPlanted[i].failure == inEmpty[i].failure && inPlanted[i].exists == inEmpty[i].exists)
            << inEmpty[i].operation->name;
}

TEST_F(Planting, NeverReachesTheRootOfADrive)
{
    const auto paths = [this](const char* root)
    {
        Install(root);
        m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "SampleDir", root);
        return RelativePaths(AskForEverything(false));
    };
    const std::size_t belowTheRoot = paths("").size();
    for (const char* const root : {".", "..", R"(..\..\..)", "relative", R"(a\..)", R"(.\C:\a)"})
        EXPECT_EQ(paths(root).size(), belowTheRoot + 1) << root << ": and the root itself";
}

class HostileVariable : public InstallationTest, public ::testing::WithParamInterface<std::string>
{
};

TEST_P(HostileVariable, GivesAnAnswerOrADocumentedFailure)
{
    Install();
    for (const char* const variable :
         {"FRAXO_PRO_LANGUAGE", "FRAXO_PRO_ROOT_DIRECTORY", "FRAXO_PRO_SECTIONS_DIRECTORY", "FRAXO_PRO_PL365",
          "PROGRAMDATA", "LOCALAPPDATA", "XDG_DATA_HOME", "HOME", "QUENLOR_ANSI_CODE_PAGE"})
    {
        m_machine.SetEnvironment(variable, GetParam());
        for (const Answer& answer : AskForEverything(false))
        {
            EXPECT_THAT(answer.failure,
                        AnyOf("", "Could not get ProgramData folder", "Could not get LocalAppData folder"))
                << variable << ' ' << answer.operation->name;
            EXPECT_LT(ToText(answer.value).length(), 3 * GetParam().length() + 1000) << answer.operation->name;
        }
    }
    EXPECT_FALSE(fs::exists(m_machine.Root() / "x"));
}

const std::string Deep = std::regex_replace(std::string(5000, '.'), std::regex{"[.]"}, R"(..\x/)");
INSTANTIATE_TEST_SUITE_P(, HostileVariable,
                         ::testing::Values(std::string(30000, 'x'), Deep, "\xFF\xC0\x80\xED\xA0\x80/x", R"(x\y)",
                                           R"(..\..\x)", R"(\\\\//\\)", "/x\r\n\t\x01\x7F\"%PATH%", "%s%n%99999d{}"));
} // namespace
