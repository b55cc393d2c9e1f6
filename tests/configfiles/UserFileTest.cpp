#include "configfiles/UserFile.h"

#include <filesystem>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/Printers.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using ::testing::ThrowsMessage;

TEST(UserFile, IsMadeInAFolderOfAnotherLetterCase)
{
    const ScratchMachine machine;
    const std::string root = machine.Folder("files");
    machine.Folder("files/DEEP");
    WriteFile(machine.Root() / "files/Default.ini", "default");
    EXPECT_EQ(Provide({root + R"(deep\User.ini)", root + "Default.ini"}), root + R"(deep\User.ini)");
    EXPECT_EQ(ReadFile(machine.Root() / "files/DEEP/User.ini"), "default");
    EXPECT_EQ(Provide({root + "\xFF.ini", root + "Default.ini"}), root + "\xEF\xBF\xBD.ini") << "malformed UTF-8";
}

// ConfigFilesTest and BadFilesTest have the other messages.
TEST(UserFile, NeedsAFolderThatCanBeMade)
{
    const ScratchMachine machine;
    const std::string root = machine.Folder("files");
    WriteFile(machine.Root() / "files/Default.ini", "default");
    EXPECT_THAT([&] { Provide({root + R"(Default.ini\User.ini)", root + "Default.ini"}); },
                ThrowsMessage<std::runtime_error>("Default.ini file target directory could not be created."));
}
} // namespace
