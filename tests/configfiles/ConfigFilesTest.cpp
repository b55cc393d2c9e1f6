#include <filesystem>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "IniConfig.h"
#include "XmlConfig.h"
#include "configfiles/UserFile.h"
#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using Quenlor::Utf8String;
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

/// The product is installed, in German, and the user has no files.
class ConfigFiles : public InstallationTest
{
protected:
    ConfigFiles() { m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "de"); }

    const Bases m_bases = Install();
};

struct Copy
{
    Utf8String (*getter)();
    std::string tail; // in the user's data
    std::string Bases::*defaultBase;
    std::string defaultTail;
    const char* advice = " The installation of FRAXO.Pro may be corrupt.";
};

// One for each way to find the default.
// clang-format off
const Copy Copies[] = {
    {IniConfig::GetFraxoProIniPath,                  R"(Default\)" + ProductIni,              &Bases::machineData, ProductIni},
    {IniConfig::GetCodesIniPath,                     R"(Default\Language\de\Codes.ini)",      &Bases::machineData, R"(Language\de\Codes.ini)"},
    {IniConfig::GetBDeckLiveLoadVehiclePath,         R"(Default\LiveLoad.veh)",               &Bases::root,        R"(FRAXO\LiveLoad.veh)"},
    {IniConfig::GetSteelAutoDrafterUserStyleIniPath, R"(Default\SteelAutoDrafter\Style.ini)", &Bases::machineData, R"(SteelAutoDrafter\SCGA-DrgEnv.INI)"},
    {XmlConfig::GetUserConnectionTagLinkFilePath,    R"(Default\Plugins\ConnectionTagLink\ConnectionTagFile.xml)", &Bases::root, R"(FRAXO\Plugins\ConnectionTagLink\Data\ConnectionTagFile.xml)", ""},
};
// clang-format on

TEST_F(ConfigFiles, AreCopiedOnce)
{
    for (const Copy& row : Copies)
    {
        const std::string path = m_bases.userData + row.tail;
        const std::filesystem::path installed = NativePath(m_bases.*row.defaultBase + row.defaultTail);
        EXPECT_THAT(row.getter,
                    ThrowsMessage<std::runtime_error>(installed.filename().string() + " file not found." + row.advice));
        WriteFile(installed, "default");
        EXPECT_EQ(row.getter(), path);
        EXPECT_EQ(ReadFile(NativePath(path)), "default");
        WriteFile(NativePath(path), "edited");
        EXPECT_EQ(row.getter(), path);
        EXPECT_EQ(ReadFile(NativePath(path)), "edited");
    }
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    m_machine.BreakShellFolder(ShellFolder::LocalAppData);
    EXPECT_THAT(IniConfig::GetFraxoProIniPath,
                ThrowsMessage<std::runtime_error>(StrEq("Could not get LocalAppData folder")));
}

TEST_F(ConfigFiles, OfOtherKindsAreOnlyLocated)
{
    WriteFile(NativePath(m_bases.machineData + R"(Sections\Custom.dbi)"), "default"); // natural to copy
    EXPECT_EQ(IniConfig::GetDbSectionCustomDbiPath(), m_bases.userData + R"(Default\Sections\Custom.dbi)");
    EXPECT_EQ(IniConfig::GetNativeCodesIniPath(), m_bases.machineData + R"(Language\de\Codes.ini)");
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "LocalAppData"));

    const std::string folder = m_machine.Folder("\xC3\xBC\xC3\x9F");
    m_machine.MoveShellFolder(ShellFolder::LocalAppData, folder.substr(0, folder.length() - 1));
    EXPECT_EQ(IniConfig::GetDbSectionCustomDbiPath(),
              folder + R"(Quenlor\Engineering\FRAXO.Pro VANTIRE Edition\Default\Sections\Custom.dbi)");
}

TEST_F(ConfigFiles, OfAProjectIncludeItsSections)
{
    const std::string database = m_machine.Folder("db");
    WriteFile(NativePath(m_bases.machineData + R"(Sections\Custom.ini)"), "machine's");
    WriteFile(NativePath(database + "Custom.ini"), "variable's");
    WriteFile(m_machine.Root() / "dbCustom.ini", "beside");
    const struct
    {
        const char* project;
        std::string variable;
        const char* content;
    } rows[] = {
        {"Bridge", "", "machine's"},
        {"Tower", database, "variable's"},
        {"Dam", database.substr(0, database.length() - 1), "beside"}, // nothing is inserted before the file's name
        {"Bridge", database, "machine's"},
    };
    for (const auto& [project, variable, content] : rows)
    {
        UseProject(project, true);
        m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", variable);
        EXPECT_EQ(IniConfig::GetDbSectionCustomIniPath(), m_bases.userData + project + R"(\Sections\Custom.ini)");
        EXPECT_EQ(ReadFile(NativePath(m_bases.userData + project + R"(\Sections\Custom.ini)")), content);
    }
}

TEST_F(ConfigFiles, NameToolsBelowThePlugIns)
{
    const std::string plugIns = m_bases.root + R"(FRAXO\Plugins\)";
    const std::string longest = R"(C:\)" + std::string(256, 'x');
    WriteFile(NativePath(plugIns + "Plugins.ini"), "[OTHER]\nCommand#5=other\n"
                                                   "[User-Tools]\nCommand#1=bin\\tool.exe -x\n"
                                                   "command#2 = C:\\My Tools\\x.exe \nCommand#-1=\"C:/negative\"\n"
                                                   "Command#4=" +
                                                       longest + "\nCommand#6=" + longest + "y\n");
    const struct
    {
        int number;
        std::string folder;
        std::string value;
    } rows[] = {{1, plugIns, "bin\\tool.exe -x"},
                {2, "", "C:\\My Tools\\x.exe"},
                {-1, "", "C:/negative"},
                {5, plugIns, ""},
                {4, "", longest},
                {6, "", longest}};
    for (auto [number, folder, value] : rows)
    {
        value.resize(260);
        EXPECT_EQ(IniConfig::GetUserToolPath(number), folder + value);
    }
}
TEST_F(ConfigFiles, AreMadeInFoldersOfAnyLetterCase)
{
    const std::string root = m_machine.Folder("files");
    m_machine.Folder("files/DEEP");
    WriteFile(m_machine.Root() / "files/Default.ini", "default");
    EXPECT_EQ(Provide({root + R"(deep\User.ini)", root + "Default.ini"}), root + R"(deep\User.ini)");
    EXPECT_EQ(ReadFile(m_machine.Root() / "files/DEEP/User.ini"), "default");
    EXPECT_EQ(Provide({root + "\xFF.ini", root + "Default.ini"}), root + "\xEF\xBF\xBD.ini") << "malformed UTF-8";
    EXPECT_THAT(
        [&] {
        Provide({root + R"(Default.ini\User.ini)", root + "Default.ini"});
        },
        ThrowsMessage<std::runtime_error>("Default.ini file target directory could not be created."));
}
} // namespace
