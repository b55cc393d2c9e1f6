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

// What somebody who can write a folder, or set a variable, cannot make the library answer.

namespace
{
using namespace FraxoInfo;
namespace fs = std::filesystem;
using ::testing::AnyOf;
using ::testing::Eq;

bool IsRooted(std::string_view path)
{
    return path.starts_with('\\') || path.starts_with('/') || path.find(':') == 1;
}

/// The relative files and folders among the answers.
std::vector<std::string> RelativePaths(const std::vector<Answer>& answers)
{
    std::vector<std::string> paths;
    for (const Answer& answer : answers)
    {
        const auto* const path = std::get_if<std::string>(&answer.value);
        if (answer.exists && path && !path->empty() && !IsRooted(*path))
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
    for (std::size_t i = 0; i < inEmpty.size(); ++i)
    {
        SCOPED_TRACE(inEmpty[i].operation->name);
        EXPECT_TRUE(!IsSettled(*inEmpty[i].operation) || inPlanted[i].value == inEmpty[i].value)
            << Shown(inPlanted[i]) << '\n'
            << Shown(inEmpty[i]);
        EXPECT_EQ(inPlanted[i].failure, inEmpty[i].failure);
        EXPECT_EQ(inPlanted[i].exists, inEmpty[i].exists);
    }
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

// ---- variables ------------------------------------------------------------------------------------------------------

class HostileVariable : public InstallationTest, public ::testing::WithParamInterface<std::string>
{
};

TEST_P(HostileVariable, GivesAnAnswerOrADocumentedFailure)
{
    Install();
    constexpr std::size_t longestTail = 1000;
    for (const char* const variable :
         {"FRAXO_PRO_LANGUAGE", "FRAXO_PRO_ROOT_DIRECTORY", "FRAXO_PRO_SECTIONS_DIRECTORY", "FRAXO_PRO_PL365",
          "PROGRAMDATA", "LOCALAPPDATA", "XDG_DATA_HOME", "HOME", "QUENLOR_ANSI_CODE_PAGE"})
    {
        m_machine.SetEnvironment(variable, GetParam());
        for (const Answer& answer : AskForEverything(false))
        {
            SCOPED_TRACE(std::string{variable} + ": " + std::string{answer.operation->name});
            EXPECT_THAT(answer.failure,
                        AnyOf("", "Could not get ProgramData folder", "Could not get LocalAppData folder"));
            const auto* const text = std::get_if<std::string>(&answer.value);
            EXPECT_TRUE(!text || text->length() < 3 * GetParam().length() + longestTail) << "more than it holds";
        }
    }
    EXPECT_FALSE(fs::exists(m_machine.Root() / "x"));
}

const std::string Long(30000, 'x');
const std::string Deep = std::regex_replace(std::string(5000, '.'), std::regex{"[.]"}, R"(..\x/)");
INSTANTIATE_TEST_SUITE_P(, HostileVariable,
                         ::testing::Values(Long, Deep, "\xFF\xC0\x80\xED\xA0\x80/x", R"(x\y)", R"(..\..\x)",
                                           R"(\\\\//\\)", "/x\r\n\t\x01\x7F\"%PATH%", "%s%n%99999d{}"));
} // namespace
