#include <cstring>
#include <filesystem>
#include <regex>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>

#include "Installation.h"

// What the library must not answer, even when others write a folder or set a variable.

namespace
{
using namespace FraxoInfo;
namespace fs = std::filesystem;
using ::testing::AnyOf;

class Planting : public InstallationTest
{
protected:
    ~Planting() override { fs::current_path(m_before); }

    /// The relative files and folders among all answers.
    static std::vector<std::string> RelativePaths()
    {
        std::vector<std::string> paths;
        for (const Answer& answer : AskForEverything(false))
        {
            const auto* const path = std::get_if<std::string>(&answer.value);
            if (answer.exists && path && !path->empty() && !std::strchr("\\/", path->front()) && path->find(':') != 1)
                paths.push_back(*path);
        }
        return paths;
    }

    const fs::path m_before = fs::current_path();
};

TEST_F(Planting, InTheCurrentFolderAndPathChangesNoAnswer)
{
    const fs::path planted = m_machine.Root() / "planted", empty = m_machine.Root() / "empty";
    fs::create_directories(empty);
    fs::current_path(empty);
    const std::vector<std::string> relative = RelativePaths();
    ASSERT_FALSE(relative.empty()) << "without a record everything below the root is relative";
    for (const std::string& path : relative)
        fs::create_directories(planted / NativePath(path));
    fs::current_path(planted);
    EXPECT_EQ(RelativePaths(), relative) << "the paths stay the same all the same";

    Install();
    m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "SampleDir", m_machine.Folder("Samples"));
    m_machine.SetEnvironment("PATH", planted.string());
    const std::string inPlanted = SettledAnswers(false);
    fs::current_path(empty);
    m_machine.SetEnvironment("PATH", empty.string());
    EXPECT_EQ(SettledAnswers(false), inPlanted);
    EXPECT_THAT(RelativePaths(), ::testing::IsEmpty());
}

TEST_F(Planting, NeverReachesTheRootOfADrive)
{
    const auto countRelative = [this](const char* root)
    {
        Install(root);
        m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "SampleDir", root);
        return RelativePaths().size();
    };
    const std::size_t belowTheRoot = countRelative("");
    for (const char* const root : {".", R"(..\..\..)", R"(a\..)", R"(.\C:\a)"})
        EXPECT_EQ(countRelative(root), belowTheRoot + 1) << root << ": and the root itself";
}

TEST_F(Planting, InVariablesGivesAnAnswerOrADocumentedFailure)
{
    Install();
    const std::string deep = std::regex_replace(std::string(5000, '.'), std::regex{"[.]"}, R"(..\x/)");
    for (const std::string& value : {std::string(30000, 'x'), deep, std::string{"\xFF\xC0\x80\xED\xA0\x80/x"},
                                     std::string{R"(..\..\x)"}, std::string{"/x\r\n\t\x01\x7F\"%PATH%%s%99999d{}"}})
    {
        for (const char* const variable :
             {"FRAXO_PRO_LANGUAGE", "FRAXO_PRO_ROOT_DIRECTORY", "FRAXO_PRO_SECTIONS_DIRECTORY", "FRAXO_PRO_PL365",
              "PROGRAMDATA", "LOCALAPPDATA", "XDG_DATA_HOME", "HOME", "QUENLOR_ANSI_CODE_PAGE"})
        {
            m_machine.SetEnvironment(variable, value);
            Quenlor::Fraxo::SharedUtilities::Native::ForgetLanguages();
            for (const Answer& answer : AskForEverything(false))
            {
                EXPECT_THAT(answer.failure,
                            AnyOf("", "Could not get ProgramData folder", "Could not get LocalAppData folder"))
                    << variable << ' ' << answer.operation->name;
                EXPECT_LT(ToText(answer.value).length(), 3 * value.length() + 1000) << answer.operation->name;
            }
        }
    }
    EXPECT_FALSE(fs::exists(m_machine.Root() / "x"));
}
} // namespace
