#include <Quenlor/NativeLogging.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "platform/quenlor5/logging/LoggingTest.h"

// What a configuration file makes of records. What is wrong with one is tried in ConfigurationFaultsTest.cpp.

namespace
{
using namespace Quenlor::NativeLogging;
using Quenlor::Utf8String;
using ::testing::HasSubstr;

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
        <logger name="Alone" additivity="false"><appender-ref ref="own"/></logger>
        <logger name="Silent" level="off"/>)");
    for (const wchar_t* const name : {L"Other", L"EDITOR.View", L"Editor.View.Quiet.x", L"Alone.x", L"Silent", L""})
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
    EXPECT_EQ(Lines("own.log"), "EDITOR.View D\nEDITOR.View I\nEDITOR.View W\nEDITOR.View E\nEDITOR.View C\n"
                                "Editor.View.Quiet.x C\nAlone.x I\nAlone.x W\nAlone.x E\nAlone.x C\n");
    EXPECT_EQ(Lines("errors.log"), "Other E\nOther C\nEDITOR.View E\nEDITOR.View C\nEditor.View.Quiet.x C\n E\n C\n");
}

TEST_F(NativeLogging, IsEnabledOnlyForWhatSomeAppenderTakes)
{
    Configure(R"(<appender name="a" type="file" path="a.log" threshold="error"/>
                 <root level="debug"><appender-ref ref="a"/></root>
                 <logger name="Alone" additivity="false"/>)");
    EXPECT_FALSE(Logger(L"Editor").IsEnabled(LogLevel::Warning));
    EXPECT_TRUE(Logger(L"Editor").IsEnabled(LogLevel::Error));
    EXPECT_FALSE(Logger(L"Editor").IsEnabled(LogLevel::Off));
    EXPECT_FALSE(Logger(L"Alone").IsEnabled(LogLevel::Critical));
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

TEST_F(NativeLogging, TakesTextOfAnyKind)
{
    Configure(R"(<appender name="a" type="file" path="a.log" pattern="%v"/><root><appender-ref ref="a"/></root>)");
    constexpr const char* nothing = nullptr;
    ILogger& logger = Logger(L"");
    logger.Error("literal");
    logger.Error(Utf8String{"own"});
    logger.Error(std::string{"standard"});
    logger.Error(std::string_view{"view!", 4});
    logger.Error(nothing);
    EXPECT_EQ(Lines("a.log"), "literal\nown\nstandard\nview\n\n");
}

TEST_F(NativeLogging, FillsVariablesAndMakesFolders)
{
    m_machine.SetEnvironment("FRAXO_PRO_TEST", "of the test");
    LoggingConfig::DefineVariable(L"Place", [] { return Utf8String{R"(deep\er\)"}; });
    Configure(
        R"(<appender name="a" type="rolling-file" path="${Place}/${env:FRAXO_PRO_TEST} 梁 😀 ${logger}.log" pattern="%v"/>
                 <appender name="b" type="file" path="${pid}.log" threshold="critical"/>
                 <root><appender-ref ref="a"/><appender-ref ref="b"/></root>)");
    ILogger& first = Logger(L"One.x");
    EXPECT_FALSE(exists(m_folder / "deep"));
    first.Error("1");
    Logger(L"Two").Error("2");
    first.Error("3");
    EXPECT_EQ(Lines(std::filesystem::path{u8"deep/er/of the test 梁 😀 One.x.log"}), "1\n3\n");
    EXPECT_EQ(Lines(std::filesystem::path{u8"deep/er/of the test 梁 😀 Two.log"}), "2\n");
    first.Critical("4");
    const auto isNumber = [](const auto& entry)
    { return entry.path().extension() == ".log" && std::stoi(entry.path().stem().string()) > 0; };
    EXPECT_EQ(std::ranges::count_if(std::filesystem::directory_iterator{m_folder}, isNumber), 1);
}

TEST_F(NativeLogging, KeepsTheNameOfALoggerWithinOneFileName)
{
    Configure(R"(<appender name="a" type="file" path="in/${logger}/a.log"/><root><appender-ref ref="a"/></root>)");
    for (const wchar_t* const name : {L"/tmp/x", L"../../x", L"..", L".", L"", L"C:\\x", L"a\n.b"})
        Logger(name).Error("");
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator{m_folder / "in"})
        names.insert(entry.path().lexically_relative(m_folder / "in").generic_string());
    std::set<std::string> expected;
    for (const std::string name : {"_tmp_x", ".._.._x", "__", "_", "root", "C__x", "a_.b"})
        expected.insert({name, name + "/a.log"});
    EXPECT_EQ(names, expected);
}

TEST_F(NativeLogging, KeepsRecordsOfManyThreadsWhole)
{
    constexpr int ThreadCount = 4;
    constexpr int LineCount = 300;
    const std::string elements =
        R"(<appender name="a" type="file" path="a.log" pattern="%n %v"/><root><appender-ref ref="a"/></root>)";
    Configure(elements);
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

    std::map<std::size_t, int> lengths;
    const std::string lines = Lines("a.log");
    for (std::size_t start = 0; start < lines.length(); start = lines.find('\n', start) + 1)
        ++lengths[lines.find('\n', start) - lines.find('x', start)];
    EXPECT_EQ(lengths, (std::map<std::size_t, int>{{500, ThreadCount * LineCount}}));
}

TEST_F(NativeLogging, LoggersStayAndFollowANewConfiguration)
{
    ILogger& logger = Logger(L"Editor");
    EXPECT_FALSE(logger.IsEnabled(LogLevel::Info)); // nothing is configured: warnings and worse
    Configure(R"(<appender name="a" type="file" path="a.log" pattern="%v"/>
                 <root level="info"><appender-ref ref="a"/></root>)");
    logger.Info("1");
    Configure(R"(<appender name="b" type="file" path="b.log" pattern="%v"/><root><appender-ref ref="b"/></root>)");
    logger.Info("2");
    logger.Error("3");
    EXPECT_EQ(LoggingConfig::ActivateProvider(LoggingProviderType{1}), Quenlor::QuenlorStatus::NotFound);
    logger.Error("4");
    EXPECT_EQ(&Logger(L"Editor"), &logger);
    EXPECT_EQ(Lines("a.log"), "1\n");
    EXPECT_EQ(Lines("b.log"), "3\n4\n");
}

/// What arrives on standard error while a logger is made for the present configuration and gets some records.
std::string OnStandardError(const std::function<void()>& configure)
{
    ::testing::internal::CaptureStderr();
    configure();
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

constexpr char WarningsAndWorse[] = ".* warning One: warning\n.* error One: error\n"
                                    ".* warning Two: warning\n.* error Two: error\n";

TEST_F(NativeLogging, WarnsOnStandardErrorWithoutAUsableConfiguration)
{
    EXPECT_THAT(OnStandardError([&] { Activate(); }), LooksLike(WarningsAndWorse)) << "missing";
    WriteFile(m_file, "<logging>\n<root>\n</logging>");
    EXPECT_THAT(OnStandardError([&] { Activate(); }), LooksLike(std::string{".*log.xml:3: .*\n"} + WarningsAndWorse))
        << "no XML";
    remove(m_file);
    create_directories(m_file);
    EXPECT_THAT(OnStandardError([&] { Activate(); }), LooksLike(std::string{".*log.xml: .*\n"} + WarningsAndWorse))
        << "no file";
    remove(m_file);
    EXPECT_THAT(OnStandardError([&] { Configure("<root level=\"info\"/>"); }),
                LooksLike(".*log.xml:2: no appender .*\n"));
}

TEST_F(NativeLogging, ReportsAFailingAppenderOnce)
{
    LoggingConfig::DefineVariable(L"Nowhere",
                                  []() -> Utf8String { throw std::runtime_error("Could not get the folder"); });
    WriteFile(m_folder / "file", "");
    const std::string text = OnStandardError(
        [&]
        {
        Configure(R"(<appender name="nowhere" type="file" path="${Nowhere}/a.log"/>
                         <appender name="unset" type="file" path="${env:FRAXO_PRO_UNSET}/a.log"/>
                         <appender name="below a file" type="file" path="file/a.log"/>
                         <appender name="works" type="file" path="works.log" pattern="%v"/>
                         <root>
                           <appender-ref ref="nowhere"/><appender-ref ref="unset"/>
                           <appender-ref ref="below a file"/><appender-ref ref="works"/>
                         </root>)");
    });
    EXPECT_THAT(text, LooksLike(".*log.xml:2: .*Could not get the folder\n"
                                ".*log.xml:3: .*\"FRAXO_PRO_UNSET\" is not set\n"
                                ".*log.xml:4: cannot open .*a.log: .*\n"));
    EXPECT_EQ(Lines("works.log"), "warning\nerror\nwarning\nerror\n");
}

TEST_F(NativeLogging, WritesToTheChosenStandardStream)
{
    ::testing::internal::CaptureStdout();
    const std::string errors = OnStandardError(
        [&]
        {
        Configure(R"(<appender name="out" type="console" target="stdout" pattern="%v"/>
                         <appender name="err" type="console" pattern="%v" threshold="error"/>
                         <root><appender-ref ref="out"/><appender-ref ref="err"/></root>)");
    });
    EXPECT_EQ(errors, "error\nerror\n");
    EXPECT_THAT(::testing::internal::GetCapturedStdout(), HasSubstr("warning"));
}
} // namespace
