// Linked against the shared libraries as an application is, so what they export, and what passes between them and a
// program, is tried for real. Everything else is tested on the static form.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <Quenlor/QnFileName.h>
#include <Quenlor/QnStringUtilities.h>

#include "CoreUtilities.h"
#include "DirectoryConfig.h"
#include "IniReader.h"
#include "PerMonitorDPIHelper.h"
#include "RegistryHelper.h"
#include "VersionConfig.h"

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using ::testing::ElementsAre;
using ::testing::ThrowsMessage;

TEST(SharedLibrary, LetsExceptionsThroughWithTheirTypeAndMessage)
{
    std::string text = "abc";
    EXPECT_THAT([&] { RightOf(text, 3); }, ThrowsMessage<std::out_of_range>("invalid string position"));
    EXPECT_THAT([&] { RightOf(text, 3); }, ThrowsMessage<std::exception>("invalid string position"));
}

TEST(SharedLibrary, SharesMemoryWithItsCaller)
{
    const auto file = std::filesystem::temp_directory_path() / "SharedLibraryTest.ini";
    std::ofstream{file} << "[Section]\nfirst=1\nsecond=" << std::string(1000, 'x') << "\nthird=none\n";
    IniReader reader;
    ASSERT_TRUE(reader.LoadFile(file.wstring()));
    std::filesystem::remove(file);

    std::vector<IniKeyValue> pairs;
    EXPECT_EQ(reader.GetKeyValuePairListBySection("Section", pairs), 3);
    EXPECT_EQ(pairs[1].Value, std::string(1000, 'x'));
    EXPECT_EQ(reader.GetIntegerValue("Section", "first", 7), 1);
    EXPECT_THAT([&] { reader.GetIntegerValue("Section", "third", 7); },
                ThrowsMessage<std::invalid_argument>("invalid stoi argument"));

    std::vector<Quenlor::Utf8String> pieces;
    Quenlor::QnStringUtilities::Split("a,b", ",", nullptr, pieces);
    EXPECT_THAT(pieces, ElementsAre("a", "b"));
}

TEST(SharedLibrary, ExportsEachClass)
{
    EXPECT_EQ(RegistryHelper::GetCurrentUserKey().ToStdString(),
              R"(Software\Quenlor Systems\)" + VersionConfig::GetVersionStamp().ToStdString());
    EXPECT_TRUE(Quenlor::QnFileName::DoesPathExist(DirectoryConfig::GetCurrentExeDirectory().GetName()));
    EXPECT_FALSE(DirectoryConfig::IsRunningFromOutput());
    EXPECT_GE(PerMonitorDPIHelper::GetSystemDPI(), 96.0);
}
} // namespace
