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
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

class XmlConfigTest : public InstallationTest
{
protected:
    const Bases m_bases = Install();
};

TEST_F(XmlConfigTest, TheToolbarIsTheUsers)
{
    const std::string installed = m_bases.root + R"(FRAXO\FProQATItemSettings.xml)";
    EXPECT_THAT(XmlConfig::GetUserQATFilePath,
                ThrowsMessage<std::runtime_error>(
                    StrEq("FProQATItemSettings.xml file not found. The installation of FRAXO.Pro may be corrupt.")));
    WriteFile(NativePath(installed), "default");
    EXPECT_EQ(XmlConfig::GetUserQATFilePath(), m_bases.userData + R"(Default\FProQATItemSettings.xml)");
}

// They come with a plug-in: their message says nothing of a corrupt installation.
TEST_F(XmlConfigTest, ConnectionTagsAreTheUsersInAFolderThatHasTwoSpellings)
{
    EXPECT_EQ(XmlConfig::GetApplicationConnectionTagLinkFilePath(),
              m_bases.root + R"(FRAXO\Plugins\ConnectionTagLink\Data\ConnectionTagFile.xml)");
    EXPECT_THAT(XmlConfig::GetUserConnectionTagLinkFilePath,
                ThrowsMessage<std::runtime_error>(StrEq("ConnectionTagFile.xml file not found.")));
    const std::string folder = m_bases.userData + R"(Default\PlugIns\ConnectionTagLink\)";
    EXPECT_EQ(DirectoryConfig::GetConnectionTagLinkAppDataDirectory(), folder);
    WriteFile(NativePath(folder + "ConnectionTagFile.xml"), "the user's");
    EXPECT_EQ(XmlConfig::GetUserConnectionTagLinkFilePath(),
              m_bases.userData + R"(Default\Plugins\ConnectionTagLink\ConnectionTagFile.xml)");
}

TEST_F(XmlConfigTest, OtherFilesAreOnlyLocated)
{
    EXPECT_EQ(XmlConfig::GetEditorMRUListFilePath(),
              m_bases.userData + R"(Default\Editor\Quenlor.Fraxo.Editor.Mru.xml)");
    EXPECT_EQ(XmlConfig::GetSteelAutoDrafterSectionListFilePath(),
              m_bases.machineData + R"(SteelAutoDrafter\SectionList.xml)");
    EXPECT_TRUE(IsEmptyFolder(m_machine.Root() / "LocalAppData"));
}
} // namespace
