// Linked against the shared libraries as an application is, so what they export, and what passes between them and a
// program, is tried for real. Everything else is tested on the static form.

#include <gmock/gmock.h>

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
#include "support/TemporaryFolder.h"

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
    const TemporaryFolder folder;
    IniReader reader;
    ASSERT_TRUE(reader.LoadFile(
        folder.Write("[Section]\nfirst=1\nsecond=" + std::string(1000, 'x') + "\nthird=none\n").wstring()));

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
    const TemporaryFolder folder;
    const auto configuration = folder.Write(R"(<logging>
        <appender name="a" type="file" path="${Place}/a.log"/>
        <root><appender-ref ref="a"/></root></logging>)",
                                            "log.xml");
    using namespace Quenlor::NativeLogging;
    LoggingConfig::DefineVariable(L"Place", []() -> Quenlor::Utf8String { throw std::runtime_error("No place"); });
    LoggingConfig::SetOption(L"CONFIG_FILE", configuration.wstring());
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(LoggingConfig::ActivateProvider(LoggingProviderType::ConfigurationFile), Quenlor::QuenlorStatus::Success);
    EXPECT_FALSE(LoggingManager::GetLogger(L"Editor")->IsEnabled(LogLevel::Critical));
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), ::testing::HasSubstr("log.xml:2: <appender>: \"a\""));
    EXPECT_STREQ(Logger::Get()->GetName().c_str(), "SharedLibraryTests");
}
} // namespace
