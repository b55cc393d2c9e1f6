#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "Logger.h"
#include "logging/Configuration.h"
#include "platform/quenlor5/logging/LoggingTest.h"
#include "support/FailingMemory.h"

namespace
{
using namespace Quenlor::NativeLogging;

class LoggingLimits : public LoggingTest
{
protected:
    /// Fails each allocation of `attempt` in turn. What cannot be made is null, and is there the next time.
    /// All log to a.log.
    void FailInTurn(ILogger* (*attempt)(std::size_t number)) const
    {
        std::size_t failing = 0;
        std::string expected;
        for (bool hasFailed = true; hasFailed;)
        {
            ILogger* logger = nullptr;
            hasFailed = WithFailingAllocation(++failing, [&] { logger = attempt(failing); });
            EXPECT_TRUE(logger || hasFailed) << failing;
            logger = attempt(failing);
            expected += std::to_string(failing) + '\n';
            ASSERT_TRUE(logger) << failing;
            logger->Error(std::to_string(failing));
        }
        EXPECT_GT(failing, 10U);
        EXPECT_EQ(Lines("a.log"), expected);
    }
};

TEST_F(LoggingLimits, LoggersSurviveAnyFailedAllocation)
{
    Configure(std::string{R"(<appender name="c" type="console" threshold="off"/>
                             <logger name="x"><appender-ref ref="c"/></logger>)"} +
              ToFile);
    FailInTurn(
        [](std::size_t number)
        { return LoggingManager::GetLogger(L"x.a name too long to be held in place " + std::to_wstring(number)); });
}

TEST_F(LoggingLimits, ConfigurationsSurviveAnyFailedAllocation)
{
    Configure(ToFile);
    Logger(L"made before");
    FailInTurn(
        [](std::size_t)
        {
        LoggingConfig::ActivateProvider(LoggingProviderType::ConfigurationFile);
        return LoggingManager::GetLogger(L"");
    });
}

TEST_F(LoggingLimits, TheProgramsLoggerSurvivesAnyFailedAllocation)
{
    using Quenlor::Fraxo::SharedUtilities::Native::Logger;
    std::size_t failing = 0;
    while (WithFailingAllocation(++failing, [] { EXPECT_NO_THROW(Logger::Get()); }) && failing < 1000)
    {
    }
    EXPECT_TRUE(Logger::Get());
    EXPECT_GT(failing, 10U);
}

TEST_F(LoggingLimits, ManyElementsAreCheap)
{
    constexpr std::size_t Count = 1000;
    std::string appenders, references;
    for (std::size_t i = 0; i < Count; ++i)
    {
        const std::string name = "appender " + std::to_string(i);
        appenders += "<appender name='" + name + "' type='file' path='" + name + "'/>\n";
        references += "<appender-ref ref='" + name + "'/>\n";
    }
    WriteFile(m_file, "<logging>" + appenders + "<root>" + references + "</root></logging>");
    std::vector<Fault> faults;
    Comparisons() = 0;
    ASSERT_EQ(ReadConfiguration(Quenlor::QnFileName{m_file.wstring()}, faults).value().appenders.size(), Count);
    EXPECT_GT(Comparisons(), Count) << "they are not counted";
    EXPECT_LT(Comparisons(), 200 * Count);
}
} // namespace
