#include <Quenlor/NativeLogging.h>

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

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
        <appender name="none" type="null"/>
        <root level="info"><appender-ref ref="all"/><appender-ref ref="errors"/><appender-ref ref="none"/></root>
        <logger name="Editor" level="debug"><appender-ref ref="own"/><appender-ref ref="all"/></logger>
        <logger name="Editor.View.Quiet" level="CRITICAL"/>
        <logger name="Editor.Alone" additivity="false"><appender-ref ref="own"/></logger>
        <logger name="Severe" level="debug" additivity="false"><appender-ref ref="errors"/></logger>
        <logger name="Silent" level="off"/>)");
    for (const wchar_t* const name :
         {L"Other", L"EDITOR.View", L"Editor.View.Quiet.x", L"Editor.Alone.x", L"Silent", L""})
    {
        ILogger& logger = Logger(name);
        logger.Trace("");
        logger.Debug("");
        logger.Info("");
        logger.Warning("");
        logger.Error("");
        logger.Critical("");
        logger.Log(LogLevel::Off, "");
    }
    EXPECT_EQ(Lines("all.log"), "Other I\nOther W\nOther E\nOther C\n"
                                "EDITOR.View D\nEDITOR.View I\nEDITOR.View W\nEDITOR.View E\nEDITOR.View C\n"
                                "Editor.View.Quiet.x C\n I\n W\n E\n C\n");
    EXPECT_EQ(Lines("own.log"),
              "EDITOR.View D\nEDITOR.View I\nEDITOR.View W\nEDITOR.View E\nEDITOR.View C\n"
              "Editor.View.Quiet.x C\n"
              "Editor.Alone.x D\nEditor.Alone.x I\nEditor.Alone.x W\nEditor.Alone.x E\nEditor.Alone.x C\n");
    EXPECT_EQ(Lines("errors.log"), "Other E\nOther C\nEDITOR.View E\nEDITOR.View C\nEditor.View.Quiet.x C\n E\n C\n");
    EXPECT_FALSE(Logger(L"Severe").IsEnabled(LogLevel::Warning)) << "no appender takes it";
    EXPECT_TRUE(Logger(L"Severe").IsEnabled(LogLevel::Error));
    EXPECT_FALSE(Logger(L"Severe").IsEnabled(LogLevel::Off));
}

TEST_F(NativeLogging, WritesRecordsAsThePatternSays)
{
    Configure(R"(<appender name="a" type="file" path="a.log" pattern="%Y-%m-%d %H:%M:%S.%e|%-8l|%n|%P|%t|%%|%v"/>
                 <appender name="b" type="file" path="b.log"/>
                 <root><appender-ref ref="a"/><appender-ref ref="b"/></root>)");
    Logger(L"Größe").Warning(Utf8String{"Träger {} %v"});
    EXPECT_THAT(Lines("a.log"),
                LooksLike("20..-..-.. ..:..:..\\....\\|warning \\|Größe\\|[0-9]+\\|[0-9]+\\|%\\|Träger \\{\\} %v\n"));
    EXPECT_THAT(Lines("b.log"), LooksLike("20.* \\[[0-9]+:[0-9]+\\] warning Größe: Träger \\{\\} %v\n"));
    EXPECT_EQ(Logger(L"Größe").GetName(), "Größe");
}

TEST_F(NativeLogging, FillsVariablesAndMakesFolders)
{
    m_machine.SetEnvironment("FRAXO_PRO_TEST", "of the test");
    LoggingConfig::DefineVariable(L"Place", [] { return Utf8String{R"(deep\er\)"}; });
    Configure(R"(<appender name="a" type="rolling-file" pattern="%v"
                     path="${Place}/${env:FRAXO_PRO_TEST} 梁 😀/${logger}/a.log"/>
                 <appender name="b" type="file" path="${pid}.log" threshold="critical"/>
                 <root><appender-ref ref="a"/><appender-ref ref="b"/></root>)");
    Logger(L"C:\\x").Info("no record yet");
    EXPECT_FALSE(exists(m_folder / "deep"));
    for (const wchar_t* const name : {L"/tmp/x", L"../../x", L"..", L".", L"", L"C:\\x", L"a\n.b", L"One.x", L"."})
        Logger(name).Error("x");
    std::set<std::string> names;
    const std::filesystem::path root = m_folder / "deep" / "er" / u8"of the test 梁 😀";
    for (const auto& entry : std::filesystem::directory_iterator{root})
        names.insert(entry.path().filename().string() + ' ' + LinesOf(entry.path() / "a.log"));
    EXPECT_EQ(names, (std::set<std::string>{"_tmp_x x\n", ".._.._x x\n", "__ x\n", "_ x\nx\n", "root x\n", "C__x x\n",
                                            "a_.b x\n", "One.x x\n"}));
    Logger(L"").Critical("");
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator{m_folder})
        files.insert(entry.path().filename().string());
    EXPECT_THAT(files, ::testing::Contains(LooksLike("[1-9][0-9]*\\.log")));
}

TEST_F(NativeLogging, KeepsRecordsOfManyThreadsWhole)
{
    constexpr int ThreadCount = 4;
    constexpr int LineCount = 300;
    Configure(ToFile);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < ThreadCount; ++thread)
    {
        threads.emplace_back(
            [thread]
            {
            for (int line = 0; line < LineCount; ++line)
                Logger(std::to_wstring(thread + line % 10).c_str()).Error(std::string(500, 'x'));
        });
    }
    for (int i = 0; i < 10; ++i)
        Activate();
    for (std::thread& thread : threads)
        thread.join();
    std::string expected;
    for (int line = 0; line < ThreadCount * LineCount; ++line)
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

/// What arrives on standard error while two loggers are made for the present configuration and get some records.
std::string OnStandardError()
{
    ::testing::internal::CaptureStderr();
    LoggingConfig::ActivateProvider(LoggingProviderType::ConfigurationFile);
    for (const wchar_t* const name : {L"One", L"Two"})
    {
        ILogger& logger = *LoggingManager::GetLogger(name);
        logger.Info("info");
        logger.Warning("warning");
        logger.Error("error");
    }
    std::string text = ::testing::internal::GetCapturedStderr();
    std::erase(text, '\r');
    return text;
}

TEST_F(NativeLogging, WarnsOnStandardErrorWithoutAUsableConfiguration)
{
    const std::string warnings = ".* warning One: warning\n.* error One: error\n"
                                 ".* warning Two: warning\n.* error Two: error\n";
    Activate();
    EXPECT_THAT(OnStandardError(), LooksLike(warnings)) << "missing";
    WriteFile(m_file, "<logging>\n<root>\n</logging>");
    EXPECT_THAT(OnStandardError(), LooksLike(".*log.xml:3: .*\n" + warnings)) << "not XML";
    WriteFile(m_file, "<logging>\n<root level='info'/></logging>");
    EXPECT_THAT(OnStandardError(), LooksLike(".*log.xml:2: no appender .*\n"));
}

TEST_F(NativeLogging, ReportsAFailingAppenderOnce)
{
    LoggingConfig::DefineVariable(L"Nowhere",
                                  []() -> Utf8String { throw std::runtime_error("Could not get the folder"); });
    WriteFile(m_folder / "file", "");
    Configure(R"(<appender name="nowhere" type="file" path="${Nowhere}/a.log"/>
                 <appender name="unset" type="file" path="${env:FRAXO_PRO_UNSET}/a.log"/>
                 <appender name="below a file" type="file" path="file/a.log"/>
                 <appender name="works" type="file" path="works.log" pattern="%v"/>
                 <appender name="out" type="console" target="stdout" pattern="%v"/>
                 <appender name="err" type="console" pattern="%v" threshold="error"/>
                 <root>
                   <appender-ref ref="nowhere"/><appender-ref ref="unset"/><appender-ref ref="below a file"/>
                   <appender-ref ref="works"/><appender-ref ref="out"/><appender-ref ref="err"/>
                 </root>)");
    ::testing::internal::CaptureStdout();
    EXPECT_THAT(OnStandardError(), LooksLike(".*log.xml:2: .*Could not get the folder\n"
                                             ".*log.xml:3: .*\"FRAXO_PRO_UNSET\" is not set\n"
                                             ".*log.xml:4: cannot open .*a.log: .*\nerror\nerror\n"));
    EXPECT_THAT(::testing::internal::GetCapturedStdout(), LooksLike("warning\r?\nerror\r?\nwarning\r?\nerror\r?\n"));
    EXPECT_EQ(Lines("works.log"), "warning\nerror\nwarning\nerror\n");
}
} // namespace
