#include "IniConfig.h"

#include <filesystem>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using Quenlor::Utf8String;
using Quenlor::Fraxo::SharedUtilities::Native::IniConfig;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

/// The product is installed, in German, and the user has no files.
class IniConfigTest : public InstallationTest
{
protected:
    IniConfigTest() { m_machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "de"); }

    const Bases m_bases = Install();
};

struct Copy
{
    const char* name;
    Utf8String (*getter)();
    const char* tail; // in the user's data
    std::string Bases::*defaultBase;
    const char* defaultTail;
};

class CopiedFile : public IniConfigTest, public ::testing::WithParamInterface<Copy>
{
};

TEST_P(CopiedFile, IsTheUsers)
{
    const std::string path = m_bases.userData + GetParam().tail;
    const std::filesystem::path installed = NativePath(m_bases.*GetParam().defaultBase + GetParam().defaultTail);
    EXPECT_THAT(GetParam().getter,
                ThrowsMessage<std::runtime_error>(StrEq(
                    installed.filename().string() + " file not found. The installation of FRAXO.Pro may be corrupt.")));
    WriteFile(installed, "default");
    EXPECT_EQ(GetParam().getter(), path);
    EXPECT_EQ(ReadFile(NativePath(path)), "default");
}

// With the release in its name, with the language, from the root; and called or filed differently from its default.
// clang-format off
INSTANTIATE_TEST_SUITE_P(IniConfig, CopiedFile, ::testing::Values(
    Copy{"Product",  IniConfig::GetFraxoProIniPath,                  R"(Default\FraxoPro22.00.00.ini)",       &Bases::machineData, "FraxoPro22.00.00.ini"},
    Copy{"Codes",    IniConfig::GetCodesIniPath,                     R"(Default\Language\de\Codes.ini)",      &Bases::machineData, R"(Language\de\Codes.ini)"},
    Copy{"Vehicles", IniConfig::GetBDeckLiveLoadVehiclePath,         R"(Default\LiveLoad.veh)",               &Bases::root,        R"(FRAXO\LiveLoad.veh)"},
    Copy{"Wizard",   IniConfig::GetStWizardDefaultStpPath,           R"(Default\StWizard\default.stp)",       &Bases::root,        R"(FRAXO\default.stp)"},
    Copy{"Style",    IniConfig::GetSteelAutoDrafterUserStyleIniPath, R"(Default\SteelAutoDrafter\Style.ini)", &Bases::machineData, R"(SteelAutoDrafter\SCGA-DrgEnv.INI)"}),
    [](const auto& row) { return std::string{row.param.name}; });
// clang-format on

TEST_F(IniConfigTest, OtherFilesAreOnlyLocated)
{
    EXPECT_EQ(IniConfig::GetNativeCodesIniPath(), m_bases.machineData + R"(Language\de\Codes.ini)");
    EXPECT_EQ(IniConfig::GetDesignCodesIniDirectory(), m_bases.root + R"(Resource\Language\de\)");
    EXPECT_EQ(IniConfig::GetFraxoCommandTblPath(), m_bases.root + R"(FRAXO\Fraxread.tbl)");

    // It would be natural to copy these.
    WriteFile(NativePath(m_bases.machineData + R"(GBSteelDesign\GBSteelDesign.ini)"), "default");
    WriteFile(NativePath(m_bases.machineData + R"(Sections\Custom.dbi)"), "default");
    EXPECT_EQ(IniConfig::GetGBSteelIniPath(), m_bases.userData + R"(Default\GBSteelDesign\GBSteelDesign.ini)");
    EXPECT_EQ(IniConfig::GetDbSectionCustomDbiPath(), m_bases.userData + R"(Default\Sections\Custom.dbi)");
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "LocalAppData"));
}

TEST_F(IniConfigTest, EachProjectHasItsOwnSectionsFromTheDatabaseOfItsTime)
{
    const auto contentFor = [this](const char* project, const std::string& database)
    {
        UseProject(project, true);
        m_machine.SetEnvironment("FRAXO_PRO_SECTIONS_DIRECTORY", database);
        const Utf8String path = IniConfig::GetDbSectionCustomIniPath();
        EXPECT_EQ(path, m_bases.userData + project + R"(\Sections\Custom.ini)");
        EXPECT_EQ(IniConfig::GetDbSectionCustomDbiPath(), m_bases.userData + project + R"(\Sections\Custom.dbi)");
        return ReadFile(NativePath(path));
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

TEST_F(IniConfigTest, AFailingShellIsReportedUnchangedTheUsersFolderFirst)
{
    m_machine.BreakShellFolder(ShellFolder::ProgramData);
    EXPECT_THAT(IniConfig::GetFraxoProIniPath,
                ThrowsMessage<std::runtime_error>(StrEq("Could not get ProgramData folder")));
    m_machine.BreakShellFolder(ShellFolder::LocalAppData);
    EXPECT_THAT(IniConfig::GetFraxoProIniPath,
                ThrowsMessage<std::runtime_error>(StrEq("Could not get LocalAppData folder")));
}

TEST_F(IniConfigTest, TheShellsTextIsUtf8)
{
    const std::string folder = m_machine.Folder("Gr\xC3\xB6\xC3\x9F"
                                                "e");
    m_machine.MoveShellFolder(ShellFolder::LocalAppData, folder.substr(0, folder.length() - 1));
    WriteFile(NativePath(m_bases.machineData + "FraxoPro22.00.00.ini"), "default");
    const std::string path = folder + R"(Quenlor\Engineering\FRAXO.Pro VANTIRE Edition\Default\FraxoPro22.00.00.ini)";
    EXPECT_EQ(IniConfig::GetFraxoProIniPath(), path);
    EXPECT_EQ(ReadFile(NativePath(path)), "default");
}

class GetUserToolPath : public IniConfigTest
{
protected:
    void InstallTools(const std::string& text) const { WriteFile(NativePath(m_plugIns + "Plugins.ini"), text); }

    /// The 260 bytes that stand for a value.
    static std::string Padded(std::string value)
    {
        value.resize(260);
        return value;
    }

    const std::string m_plugIns = m_bases.root + R"(FRAXO\Plugins\)";
};

TEST_F(GetUserToolPath, IsBelowThePlugInsUnlessItIsAbsolute)
{
    InstallTools("[OTHER]\nCommand#5=other\n"
                 "[User-Tools]\nCommand#1=bin\\tool.exe -x\ncommand#2 = C:\\My Tools\\x.exe \n"
                 "Command#3=\"\\\\server\\share\\x.exe\"\nCommand#4='x.exe'\nCommand#-1=C:/negative\nCommand#6=\n");
    EXPECT_EQ(IniConfig::GetUserToolPath(1), m_plugIns + Padded("bin\\tool.exe -x"));
    EXPECT_EQ(IniConfig::GetUserToolPath(2), Padded("C:\\My Tools\\x.exe"));
    EXPECT_EQ(IniConfig::GetUserToolPath(3), Padded("\\\\server\\share\\x.exe"));
    EXPECT_EQ(IniConfig::GetUserToolPath(4), m_plugIns + Padded("x.exe"));
    EXPECT_EQ(IniConfig::GetUserToolPath(-1), Padded("C:/negative"));
    EXPECT_EQ(IniConfig::GetUserToolPath(5), m_plugIns + Padded("")) << "no such key";
    EXPECT_EQ(IniConfig::GetUserToolPath(6), m_plugIns + Padded(""));
}

TEST_F(GetUserToolPath, IsCutTo259BytesOfValue)
{
    std::string tools = "[USER-TOOLS]\n";
    for (const std::size_t length : {258U, 259U, 260U, 600U})
        tools += "Command#" + std::to_string(length) + R"(=C:\)" + std::string(length - 3, 'x') + '\n';
    InstallTools(tools);
    EXPECT_EQ(IniConfig::GetUserToolPath(258), Padded(R"(C:\)" + std::string(255, 'x')));
    for (const int length : {259, 260, 600})
        EXPECT_EQ(IniConfig::GetUserToolPath(length), Padded(R"(C:\)" + std::string(256, 'x'))) << length;
}

TEST_F(GetUserToolPath, ReadsTheUsersList)
{
    EXPECT_THAT([] { IniConfig::GetUserToolPath(1); },
                ThrowsMessage<std::runtime_error>(
                    StrEq("Plugins.ini file not found. The installation of FRAXO.Pro may be corrupt.")));
    InstallTools("[USER-TOOLS]\nCommand#1=installed");
    EXPECT_EQ(IniConfig::GetUserToolPath(1), m_plugIns + Padded("installed"));
    WriteFile(NativePath(m_bases.userData + R"(Default\Plugins\Plugins.ini)"), "[USER-TOOLS]\nCommand#1=edited");
    EXPECT_EQ(IniConfig::GetUserToolPath(1), m_plugIns + Padded("edited"));
}
} // namespace
