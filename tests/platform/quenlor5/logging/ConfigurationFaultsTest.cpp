#include "logging/Configuration.h"

#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::NativeLogging;
using namespace std::string_literals;

struct Line
{
    const char* text;
    const char* fault = "";
};

// clang-format off
constexpr Line Lines[] = {
    {"\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?><!-- comments are skipped --><logging>"},
    {"<appender name='a1' type='rolling-file' path='b/../p/x' size='2KB' count='0'/>"},
    {"<appender name='a2' type='console' target='stdout' pattern='%% %=10!v' threshold='OFF'/>"},
    {"<appender name='a3' type='b'/>", "type=\"b\""},
    {"<appender name='a4' type='file' path=''/>", "attribute \"path\" is missing"},
    {"<appender name='a5' type='null' pattern='%v %q'/>", "expected after %: one of"},
    {"<appender name='a0' type='null' pattern='%v %-5'/>", "expected after %: one of"},
    {"<appender name='a6' type='rolling-file' path='x6' size='0KB'/>", "invalid size=\"0KB\""},
    {"<appender name='a7' type='rolling-file' path='x7' size='99999999999GB'/>", "expected: a number of bytes"},
    {"<appender name='a8' type='rolling-file' path='x8' count='1001'/>", "expected: a number from 0"},
    {"<appender name='a9' type='file' path='./p//x'/>", "\"a1\" writes the same file"},
    {"<appender name='a9' type='null'/>", "duplicate appender \"a9\""},
    {"<logger name='Ä' additivity='false' level='Trace'><appender-ref ref='a1'/><appender-ref ref='a3'/></logger>"},
    {"<logger name='ä'/>", "duplicate \"ä\""},
    {"<logger name='l1' lvl='info'/>", "unknown attribute \"lvl\"; expected: name, level"},
    {"<logger name='l2' level='loud'/>", "invalid level=\"loud\"; expected: trace, debug,"},
    {"<root><appender-ref ref='b'/></root>", "unknown appender \"b\""},
    {"<apender/>", "<apender>: unexpected element; expected: appender, logger, root"},
    {"rest", "<logging>: unexpected text"},
    {"</logging><root/>", "unexpected content outside <logging>"},
};
// clang-format on

TEST(ReadConfiguration, ReportsEachFaultWithItsLineAndUsesTheRest)
{
    std::string text;
    for (const Line& line : Lines)
        text += line.text + "\n"s;
    const ScratchMachine machine;
    const auto path = machine.Root() / "log.xml";
    WriteFile(path, text);
    std::vector<Fault> faults;
    const auto configuration = ReadConfiguration(Quenlor::QnFileName{path.wstring()}, faults);
    std::map<std::size_t, std::string> faultsByLine;
    for (const Fault& fault : faults)
        faultsByLine[fault.line] += fault.text;
    std::size_t number = 0;
    for (const Line& line : Lines)
    {
        const std::string fault = faultsByLine[++number];
        EXPECT_THAT(fault, ::testing::HasSubstr(line.fault)) << line.text;
        EXPECT_EQ(fault == "", line.fault == ""s) << line.text;
    }
    ASSERT_TRUE(configuration);
    EXPECT_EQ(configuration->appenders.at(0).maxSize, 2048U);
    EXPECT_EQ(configuration->appenders.at(0).count, 0U);
    EXPECT_EQ(configuration->appenders.at(1).threshold, LogLevel::Off);
}
} // namespace
