#include <Quenlor/NativeLogging.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include <gmock/gmock.h>

#include "platform/quenlor5/logging/LoggingTest.h"

// What a configuration file makes of records. Faulty files are tested in ConfigurationFaultsTest.cpp.

namespace
{
using namespace Quenlor::NativeLogging;
using Quenlor::Utf8String;

using NativeLogging = LoggingTest;

TEST_F(NativeLogging, SendsRecordsAsConfigured)
{
    Configure(R"(
        <appender name="all" type="file" path="all.log" pattern="%n %L"/>
        <appender name="own" type="file" path="own.log" pattern="%n %L"/>
        <appender name="errors" type="file" path="errors.log" pattern="%n %L" threshold="Error"/>
        <root level="info"><appender-ref ref="all"/><appender-ref ref="errors"/></root>
        <logger name="Editor" level="debug"><appender-ref ref="own"/><appender-ref ref="all"/></logger>
        <logger name="Editor.View.Quiet" level="CRITICAL"/>
        <logger name="Editor.Alone" additivity="false"><appender-ref ref="own"/></logger>
        <logger name="Severe" level="debug" additivity="false"><appender-ref ref="errors"/></logger>
        <logger name="Silent" level="off"/>)");
    for (const wchar_t* const name :
         {L"Other", L"EDITOR.View", L"Editor.View.Quiet.x", L"Editor.Alone.x", L"Silent", L""})
    {
        ILogger& logger = Logger(name);
        logger.Debug("");
        logger.Warning("");
        logger.Critical("");
        logger.Log(LogLevel::Off, "");
    }
    EXPECT_EQ(Lines("all.log"), "Other W\nOther C\nEDITOR.View D\nEDITOR.View W\nEDITOR.View C\n"
                                "Editor.View.Quiet.x C\n W\n C\n");
    EXPECT_EQ(Lines("own.log"), "EDITOR.View D\nEDITOR.View W\nEDITOR.View C\nEditor.View.Quiet.x C\n"
                                "Editor.Alone.x D\nEditor.Alone.x W\nEditor.Alone.x C\n");
    EXPECT_EQ(Lines("errors.log"), "Other C\nEDITOR.View C\nEditor.View.Quiet.x C\n C\n");
    EXPECT_FALSE(Logger(L"Severe").IsEnabled(LogLevel::Warning)) << "no appender takes it";
}

TEST_F(NativeLogging, WritesRecordsAsThePatternSays)
{
    Configure(R"(<appender name="a" type="file" path="a.log" pattern="%Y-%m-%d %H:%M:%S.%e|%-8l|%n|%P|%t|%%|%v"/>
                 <root><appender-ref ref="a"/></root>)");
    Logger(L"Größe").Warning(Utf8String{"Träger {} %v"});
    EXPECT_THAT(Lines("a.log"),
                LooksLike("20..-..-.. ..:..:..\\....\\|warning \\|Größe\\|[0-9]+\\|[0-9]+\\|%\\|Träger \\{\\} %v\n"));
}

TEST_F(NativeLogging, FillsVariablesAndMakesFolders)
{
    m_machine.SetEnvironment("FRAXO_PRO_TEST", "of the test");
    LoggingConfig::DefineVariable("Place", [] { return Utf8String{R"(deep\er\)"}; });
    Configure(R"(<appender name="a" type="rolling-file" path="${Place}/${env:FRAXO_PRO_TEST} 梁 😀/${logger}.log"
                     pattern="%n"/>
                 <root><appender-ref ref="a"/></root>)");
    Logger(L"").Info("no record yet");
    EXPECT_FALSE(exists(m_folder / "deep"));
    const std::pair<const wchar_t*, std::string> rows[] = {
        {L"../../x", ".._.._x"}, {L"..", "__"}, {L"", "root"}, {L"C:\\x", "C__x"}, {L"One.x", "One.x"}};
    for (const auto& [name, file] : rows)
    {
        Logger(name).Error("");
        EXPECT_EQ(Lines(std::filesystem::path{"deep"} / "er" / u8"of the test 梁 😀" / (file + ".log")),
                  Logger(name).GetName().ToStdString() + '\n');
    }
}

TEST_F(NativeLogging, KeepsRecordsOfManyThreadsWhole)
{
    Configure(ToFile);
    const auto log = []
    {
        for (int line = 0; line < 300; ++line)
            Logger(std::to_wstring(line % 13).c_str()).Error(std::string(500, 'x'));
    };
    std::thread threads[] = {std::thread{log}, std::thread{log}, std::thread{log}, std::thread{log}};
    for (int i = 0; i < 10; ++i)
        Activate();
    for (std::thread& thread : threads)
        thread.join();
    std::string expected;
    for (int line = 0; line < 4 * 300; ++line)
        expected += std::string(500, 'x') + '\n';
    EXPECT_EQ(Lines("a.log"), expected);
}

TEST_F(NativeLogging, LoggersStayAndFollowANewConfiguration)
{
    ILogger& logger = Logger(L"Editor");
    EXPECT_FALSE(logger.IsEnabled(LogLevel::Info)); // nothing is configured: warnings and worse
    Configure(ToFile);
    logger.Info("1");
    Configure(R"(<appender name="b" type="file" path="b.log" pattern="%v"/><root><appender-ref ref="b"/></root>)");
    EXPECT_TRUE(remove(m_folder / "a.log")) << "it has been closed";
    logger.Info("2");
    logger.Error(std::string_view{"34", 1});
    EXPECT_EQ(LoggingConfig::ActivateProvider(LoggingProviderType{1}), Quenlor::QuenlorStatus::NotFound);
    logger.Error(static_cast<const char*>(nullptr));
    EXPECT_EQ(&Logger(L"Editor"), &logger);
    EXPECT_FALSE(exists(m_folder / "a.log"));
    EXPECT_EQ(Lines("b.log"), "3\n\n");
}

TEST_F(NativeLogging, WarnsOnStandardErrorWithoutAUsableConfiguration)
{
    const std::string records = ".* warning One: warning\n.* warning Two: warning\n";
    EXPECT_THAT(OnStandardError(), LooksLike(records)) << "missing";
    WriteFile(m_file, "<logging>\n<root>\n</logging>");
    EXPECT_THAT(OnStandardError(), LooksLike(".*log.xml:3: .*\n" + records)) << "not XML";
    WriteFile(m_file, "<logging>\n<root level='info'/></logging>");
    EXPECT_THAT(OnStandardError(), LooksLike(".*log.xml:2: no appender .*\n"));
}

TEST_F(NativeLogging, ReportsAFailingAppenderOnce)
{
    LoggingConfig::DefineVariable("Nowhere",
                                  []() -> Utf8String { throw std::runtime_error("Could not get the folder"); });
    Configure(R"(<appender name="nowhere" type="file" path="${Nowhere}/a.log"/>
                 <appender name="unset" type="file" path="${env:FRAXO_PRO_UNSET}/a.log"/>
                 <appender name="works" type="file" path="works.log" pattern="%v"/>
                 <appender name="out" type="console" target="stdout" pattern="%v"/>
                 <root>
                   <appender-ref ref="nowhere"/><appender-ref ref="unset"/><appender-ref ref="works"/>
                   <appender-ref ref="out"/>
                 </root>)");
    ::testing::internal::CaptureStdout();
    EXPECT_THAT(OnStandardError(), LooksLike(".*log.xml:2: .*Could not get the folder\n"
                                             ".*log.xml:3: .*\"FRAXO_PRO_UNSET\" is not set\n"));
    EXPECT_THAT(::testing::internal::GetCapturedStdout(), LooksLike("warning\r?\nwarning\r?\n"));
    EXPECT_EQ(Lines("works.log"), "warning\nwarning\n");
}
} // namespace
