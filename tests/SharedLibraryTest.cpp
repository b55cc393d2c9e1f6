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
#include "Logger.h"
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

TEST(SharedLibrary, LogsAndKeepsAFailureOfTheProgramsFromIt)
{
    const auto folder = std::filesystem::temp_directory_path() / "SharedLibraryTest";
    std::filesystem::create_directory(folder);
    std::ofstream{folder / "log.xml"} << R"(<logging>
        <appender name="a" type="file" path="${Place}/a.log"/>
        <root><appender-ref ref="a"/></root></logging>)";
    using namespace Quenlor::NativeLogging;
    LoggingConfig::DefineVariable(L"Place", []() -> Quenlor::Utf8String { throw std::runtime_error("No place"); });
    LoggingConfig::SetOption(L"CONFIG_FILE", (folder / "log.xml").wstring());
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(LoggingConfig::ActivateProvider(LoggingProviderType::ConfigurationFile), Quenlor::QuenlorStatus::Success);
    EXPECT_FALSE(LoggingManager::GetLogger(L"Editor")->IsEnabled(LogLevel::Critical));
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), ::testing::HasSubstr("log.xml:2: <appender>: \"a\""));
    std::filesystem::remove_all(folder);
    EXPECT_STREQ(Logger::Get()->GetName().c_str(), "SharedLibraryTests");
}
} // namespace
