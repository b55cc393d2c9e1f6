#include <filesystem>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "DirectoryConfig.h"
#include "IniConfig.h"
#include "XmlConfig.h"
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

// With the release in its name, with the language, from the root, called or filed differently, and of a plug-in.
// clang-format off
const Copy Copies[] = {
    {IniConfig::GetFraxoProIniPath,                  R"(Default\)" + ProductIni,       &Bases::machineData, ProductIni},
    {IniConfig::GetCodesIniPath,                     R"(Default\Language\de\Codes.ini)",      &Bases::machineData, R"(Language\de\Codes.ini)"},
    {IniConfig::GetBDeckLiveLoadVehiclePath,         R"(Default\LiveLoad.veh)",               &Bases::root,        R"(FRAXO\LiveLoad.veh)"},
    {IniConfig::GetStWizardDefaultStpPath,           R"(Default\StWizard\default.stp)",       &Bases::root,        R"(FRAXO\default.stp)"},
    {IniConfig::GetSteelAutoDrafterUserStyleIniPath, R"(Default\SteelAutoDrafter\Style.ini)", &Bases::machineData, R"(SteelAutoDrafter\SCGA-DrgEnv.INI)"},
    {XmlConfig::GetUserQATFilePath,                  R"(Default\FProQATItemSettings.xml)",    &Bases::root,        R"(FRAXO\FProQATItemSettings.xml)"},
    {XmlConfig::GetUserConnectionTagLinkFilePath,    R"(Default\Plugins\ConnectionTagLink\ConnectionTagFile.xml)", &Bases::root, R"(FRAXO\Plugins\ConnectionTagLink\Data\ConnectionTagFile.xml)", ""},
};
// clang-format on

TEST_F(ConfigFiles, AreTheUsersCopiesOfDefaults)
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
    }
    EXPECT_EQ(DirectoryConfig::GetConnectionTagLinkAppDataDirectory(), // the same folder in other letter case
              m_bases.userData + R"(Default\PlugIns\ConnectionTagLink\)");
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    m_machine.BreakShellFolder(ShellFolder::LocalAppData);
    EXPECT_THAT(IniConfig::GetFraxoProIniPath,
                ThrowsMessage<std::runtime_error>(StrEq("Could not get LocalAppData folder")))
        << "the user's folder first";
}

TEST_F(ConfigFiles, OfOtherKindsAreOnlyLocated)
{
    EXPECT_EQ(XmlConfig::GetEditorMRUListFilePath(),
              m_bases.userData + R"(Default\Editor\Quenlor.Fraxo.Editor.Mru.xml)");
    EXPECT_EQ(XmlConfig::GetSteelAutoDrafterSectionListFilePath(),
              m_bases.machineData + R"(SteelAutoDrafter\SectionList.xml)");
    EXPECT_EQ(IniConfig::GetNativeCodesIniPath(), m_bases.machineData + R"(Language\de\Codes.ini)");
    WriteFile(NativePath(m_bases.machineData + R"(Sections\Custom.dbi)"), "default"); // natural to copy
    EXPECT_EQ(IniConfig::GetDbSectionCustomDbiPath(), m_bases.userData + R"(Default\Sections\Custom.dbi)");
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "LocalAppData"));

    const std::string folder = m_machine.Folder("\xC3\xBC\xC3\x9F");
    m_machine.MoveShellFolder(ShellFolder::LocalAppData, folder.substr(0, folder.length() - 1));
    EXPECT_EQ(IniConfig::GetDbSectionCustomDbiPath(),
              folder + R"(Quenlor\Engineering\FRAXO.Pro VANTIRE Edition\Default\Sections\Custom.dbi)");
}

TEST_F(ConfigFiles, OfEachProjectIncludeItsSections)
{
    const auto contentFor = [this](const char* project, const std::string& database)
    {
        UseProject(project, true);
        m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", database);
        EXPECT_EQ(IniConfig::GetDbSectionCustomIniPath(), m_bases.userData + project + R"(\Sections\Custom.ini)");
        return ReadFile(NativePath(m_bases.userData + project + R"(\Sections\Custom.ini)"));
    };
    const std::string database = m_machine.Folder("db");
    WriteFile(NativePath(m_bases.machineData + R"(Sections\Custom.ini)"), "machine's");
    WriteFile(NativePath(database + "Custom.ini"), "variable's");
    WriteFile(m_machine.Root() / "dbCustom.ini", "beside");
    EXPECT_EQ(contentFor("Bridge", ""), "machine's");
    EXPECT_EQ(contentFor("Tower", database), "variable's");
    // Without a separator at its end the folder is the start of the file's name: nothing is inserted.
    EXPECT_EQ(contentFor("Dam", database.substr(0, database.length() - 1)), "beside");
    EXPECT_EQ(contentFor("Bridge", database), "machine's");
}

/// The 260 bytes of a tool's value.
std::string Padded(std::string value)
{
    value.resize(260);
    return value;
}

TEST_F(ConfigFiles, NameToolsBelowThePlugIns)
{
    const std::string plugIns = m_bases.root + R"(FRAXO\Plugins\)";
    WriteFile(NativePath(plugIns + "Plugins.ini"), "[USER-TOOLS]\nCommand#1=installed");
    EXPECT_EQ(IniConfig::GetUserToolPath(1), plugIns + Padded("installed"));

    const std::string longest = R"(C:\)" + std::string(256, 'x');
    WriteFile(NativePath(m_bases.userData + R"(Default\Plugins\Plugins.ini)"),
              "[OTHER]\nCommand#5=other\n"
              "[User-Tools]\nCommand#1=bin\\tool.exe -x\ncommand#2 = C:\\My Tools\\x.exe \n"
              "Command#-1=\"C:/negative\"\nCommand#4=" +
                  longest + "\nCommand#6=" + longest + "y\n");
    EXPECT_EQ(IniConfig::GetUserToolPath(1), plugIns + Padded("bin\\tool.exe -x"));
    EXPECT_EQ(IniConfig::GetUserToolPath(2), Padded("C:\\My Tools\\x.exe"));
    EXPECT_EQ(IniConfig::GetUserToolPath(-1), Padded("C:/negative"));
    EXPECT_EQ(IniConfig::GetUserToolPath(5), plugIns + Padded("")) << "no such key";
    EXPECT_EQ(IniConfig::GetUserToolPath(4), Padded(longest));
    EXPECT_EQ(IniConfig::GetUserToolPath(6), Padded(longest));
}
} // namespace
