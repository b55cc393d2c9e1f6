#include "XmlConfig.h"

#include <filesystem>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "DirectoryConfig.h"
#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using Quenlor::Utf8String;
using Quenlor::Fraxo::SharedUtilities::Native::DirectoryConfig;
using Quenlor::Fraxo::SharedUtilities::Native::XmlConfig;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

struct Copy
{
    const char* name;
    Utf8String (*getter)();
    Utf8String (*defaultGetter)();
    const char* tail;        // in the user's data
    const char* defaultTail; // below the root
    const char* notFound;
};

class CopiedXmlFile : public InstallationTest, public ::testing::WithParamInterface<Copy>
{
};

TEST_P(CopiedXmlFile, IsTheUsersAndHasMessagesOfItsOwn)
{
    const Copy& row = GetParam();
    const Bases bases = Install();
    const std::string path = bases.userData + row.tail;
    const std::filesystem::path user = NativePath(path);
    const std::filesystem::path installed = NativePath(bases.root + row.defaultTail);
    const auto expectFailure = [&](const std::string& message)
    { EXPECT_THAT(row.getter, ThrowsMessage<std::runtime_error>(StrEq(message))); };

    EXPECT_EQ(row.defaultGetter(), bases.root + row.defaultTail);
    expectFailure(row.notFound);
    std::filesystem::create_directories(installed);
    expectFailure(user.filename().string() + " file could not be copied.");
    std::filesystem::remove(user.parent_path());
    WriteFile(user.parent_path(), "a file in the place of a folder");
    expectFailure(user.filename().string() + " file target directory could not be created.");

    std::filesystem::remove(installed);
    std::filesystem::remove(user.parent_path());
    WriteFile(installed, "default");
    EXPECT_EQ(row.getter(), path);
    EXPECT_EQ(ReadFile(user), "default");
}

// The tags come with a plug-in: their message says nothing of a corrupt installation.
// clang-format off
INSTANTIATE_TEST_SUITE_P(XmlConfig, CopiedXmlFile, ::testing::Values(
    Copy{"Toolbar", XmlConfig::GetUserQATFilePath, XmlConfig::GetApplicationQATFilePath,
         R"(Default\FProQATItemSettings.xml)", R"(FRAXO\FProQATItemSettings.xml)",
         "FProQATItemSettings.xml file not found. The installation of FRAXO.Pro may be corrupt."},
    Copy{"ConnectionTags", XmlConfig::GetUserConnectionTagLinkFilePath, XmlConfig::GetApplicationConnectionTagLinkFilePath,
         R"(Default\Plugins\ConnectionTagLink\ConnectionTagFile.xml)", R"(FRAXO\Plugins\ConnectionTagLink\Data\ConnectionTagFile.xml)",
         "ConnectionTagFile.xml file not found."}),
    [](const auto& row) { return std::string{row.param.name}; });
// clang-format on

using XmlConfigTest = InstallationTest;

TEST_F(XmlConfigTest, ConnectionTagsLieInAFolderThatHasTwoSpellings)
{
    const Bases bases = Install();
    const Utf8String folder = DirectoryConfig::GetConnectionTagLinkAppDataDirectory();
    EXPECT_EQ(folder, bases.userData + R"(Default\PlugIns\ConnectionTagLink\)");
    WriteFile(NativePath(folder + "ConnectionTagFile.xml"), "the user's");
    EXPECT_EQ(XmlConfig::GetUserConnectionTagLinkFilePath(),
              bases.userData + R"(Default\Plugins\ConnectionTagLink\ConnectionTagFile.xml)");
}

TEST_F(XmlConfigTest, OtherFilesAreOnlyLocated)
{
    const auto expectFilesIn = [](const Bases& bases)
    {
        EXPECT_EQ(XmlConfig::GetMRUListFilePath(), bases.userData + R"(Default\FProMRUFiles.xml)");
        EXPECT_EQ(XmlConfig::GetEditorMRUListFilePath(),
                  bases.userData + R"(Default\Editor\Quenlor.Fraxo.Editor.Mru.xml)");
        EXPECT_EQ(XmlConfig::GetScriptEditorMRUListFilePath(),
                  bases.userData + R"(Default\ScriptEditor\Quenlor.Fraxo.Editor.Mru.xml)");
        EXPECT_EQ(XmlConfig::GetSteelAutoDrafterSectionListFilePath(),
                  bases.machineData + R"(SteelAutoDrafter\SectionList.xml)");
    };
    expectFilesIn(Install());
    expectFilesIn(RunFromOutput());
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "LocalAppData"));
}
} // namespace
