#include <filesystem>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "IniConfig.h"
#include "XmlConfig.h"
#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using Quenlor::Utf8String;
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using ::testing::ThrowsMessage;

/// The product is installed, in German, and the user has no files.
class ConfigFiles : public InstallationTest
{
protected:
    ConfigFiles() { m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "de"); }

    const Bases m_bases = Install();
};

TEST_F(ConfigFiles, AreCopiedOnce)
{
    const struct // one for each way to find the default
    {
        Utf8String (*getter)();
        std::string tail; // in the user's data
        std::string installed;
        const char* advice = " The installation of FRAXO.Pro may be corrupt.";
    } rows[] = {
        {IniConfig::GetFraxoProIniPath, R"(Default\)" + ProductIni, m_bases.machineData + ProductIni},
        {IniConfig::GetCodesIniPath, R"(Default\Language\de\Codes.ini)",
         m_bases.machineData + R"(Language\de\Codes.ini)"},
        {IniConfig::GetBDeckLiveLoadVehiclePath, R"(Default\LiveLoad.veh)", m_bases.root + R"(FRAXO\LiveLoad.veh)"},
        {IniConfig::GetSteelAutoDrafterUserStyleIniPath, R"(Default\SteelAutoDrafter\Style.ini)",
         m_bases.machineData + R"(SteelAutoDrafter\SCGA-DrgEnv.INI)"},
        {XmlConfig::GetUserConnectionTagLinkFilePath, R"(Default\Plugins\ConnectionTagLink\ConnectionTagFile.xml)",
         m_bases.root + R"(FRAXO\Plugins\ConnectionTagLink\Data\ConnectionTagFile.xml)", ""},
    };
    for (const auto& [getter, tail, installed, advice] : rows)
    {
        const std::string path = m_bases.userData + tail;
        EXPECT_THAT(getter, ThrowsMessage<std::runtime_error>(NativePath(installed).filename().string() +
                                                              " file not found." + advice));
        WriteFile(NativePath(installed), "default");
        EXPECT_EQ(getter(), path);
        EXPECT_EQ(ReadFile(NativePath(path)), "default");
        WriteFile(NativePath(path), "edited");
        EXPECT_EQ(getter(), path);
        EXPECT_EQ(ReadFile(NativePath(path)), "edited");
    }
    m_machine.BreakShellFolder(ShellFolder::LocalAppData);
    EXPECT_THAT(IniConfig::GetFraxoProIniPath, ThrowsMessage<std::runtime_error>("Could not get LocalAppData folder"));
}

TEST_F(ConfigFiles, WantAFolderThatCanBeMade)
{
    WriteFile(NativePath(m_bases.machineData + ProductIni), "default");
    WriteFile(NativePath(m_machine.Folder("LocalAppData") + "Quenlor"), "in the place of a folder");
    EXPECT_THAT(IniConfig::GetFraxoProIniPath,
                ThrowsMessage<std::runtime_error>(ProductIni + " file target directory could not be created."));
}

TEST_F(ConfigFiles, OfAProjectIncludeItsSections)
{
    const std::string database = m_machine.Folder("db");
    WriteFile(NativePath(m_bases.machineData + R"(Sections\Custom.ini)"), "machine's");
    WriteFile(NativePath(database + "Custom.ini"), "variable's");
    const auto provided = [this](const char* project, const std::string& variable)
    {
        UseProject(project, true);
        m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", variable);
        EXPECT_EQ(IniConfig::GetDbSectionCustomIniPath(), m_bases.userData + project + R"(\Sections\Custom.ini)");
        return ReadFile(NativePath(m_bases.userData + project + R"(\Sections\Custom.ini)"));
    };
    EXPECT_EQ(provided("Bridge", ""), "machine's");
    EXPECT_EQ(provided("Tower", database), "variable's");
}

TEST_F(ConfigFiles, NameToolsBelowThePlugIns)
{
    const std::string plugIns = m_bases.root + R"(FRAXO\Plugins\)", longest = R"(C:\)" + std::string(256, 'x');
    WriteFile(NativePath(plugIns + "Plugins.ini"),
              "[OTHER]\nCommand#5=other\n[User-Tools]\nCommand#1=bin\\tool.exe -x\n"
              "command#2 = C:\\My Tools\\x.exe \nCommand#6=" +
                  longest + "y\n");
    const auto filled = [](std::string value)
    {
        value.resize(260); // with NULs
        return value;
    };
    EXPECT_EQ(IniConfig::GetUserToolPath(1), plugIns + filled("bin\\tool.exe -x"));
    EXPECT_EQ(IniConfig::GetUserToolPath(2), filled("C:\\My Tools\\x.exe"));
    EXPECT_EQ(IniConfig::GetUserToolPath(5), plugIns + filled(""));
    EXPECT_EQ(IniConfig::GetUserToolPath(6), filled(longest));
}
} // namespace
