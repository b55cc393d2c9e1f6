#include "logging/Configuration.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::NativeLogging;
using ::testing::HasSubstr;

std::vector<Fault> FaultsOf(const std::string& text, std::optional<Configuration>* result = nullptr)
{
    const ScratchMachine machine;
    const auto path = machine.Root() / "log.xml";
    WriteFile(path, text);
    std::vector<Fault> faults;
    auto configuration = ReadConfiguration(Quenlor::QnFileName{path.wstring()}, faults);
    if (result)
        *result = std::move(configuration);
    return faults;
}

TEST(ReadConfiguration, AcceptsWhatIsDocumented)
{
    std::optional<Configuration> configuration;
    const auto faults = FaultsOf("\xEF\xBB\xBF"
                                 R"(<?xml version="1.0" encoding="utf-8"?>
        <!-- comments are skipped -->
        <logging>
          <root level="Warning"><appender-ref ref="r"/></root>
          <appender name="c" type="console" target="stdout" pattern="%% %=10!v" threshold="OFF"/>
          <appender name="s" type="rolling-file" path="x.log" size="2KB"/>
          <appender name="r" type="rolling-file" path="y.log" size="1GB" count="0"/>
          <appender name="d" type="debugger"/>
          <logger name="Editor" additivity="false" level="trace"/>
        </logging>)",
                                 &configuration);
    ASSERT_EQ(faults.size(), 0U) << faults.front().line << ": " << faults.front().text;
    EXPECT_EQ(configuration->appenders.at(1).maxSize, 2U << 10);
    EXPECT_EQ(configuration->appenders.at(2).maxSize, 1U << 30);
    EXPECT_EQ(configuration->appenders.at(2).count, 0U);
}

struct Broken
{
    const char* text; ///< Its second line has the fault.
    const char* fault;
};

// clang-format off
constexpr Broken BrokenOnes[] = {
    {"<logging>\n</root>", "mismatch"},
    {"\n<log4j/>", "must be <logging>"},
    {"<logging>\n<apender/></logging>", "<apender>: unexpected element; expected: appender, logger, root"},
    {"<logging>\n<root>console</root></logging>", "<root>: unexpected text"},
    {"<logging>\n<root lvl='info'/></logging>", "unknown attribute \"lvl\"; expected: level"},
    {"<logging>\n<appender name='a' type='console' path='x'/></logging>", "unknown attribute \"path\""},
    {"<logging>\n<root level='info' level='info'/></logging>", "duplicate attribute \"level\""},
    {"<logging>\n<logger level='info'/></logging>", "attribute \"name\" is missing"},
    {"<logging>\n<appender name='a' type='file' path=''/></logging>", "attribute \"path\" is missing"},
    {"<logging>\n<appender name='a' type='files'/></logging>", "invalid type=\"files\"; expected: console, file,"},
    {"<logging>\n<root level='loud'/></logging>", "invalid level=\"loud\"; expected: trace, debug,"},
    {"<logging>\n<logger name='a' additivity='no'/></logging>", "expected: false, true"},
    {"<logging>\n<appender name='a' type='console' target='tty'/></logging>", "expected: stderr, stdout"},
    {"<logging>\n<appender name='a' type='null' pattern='%v %q'/></logging>", "expected after %: one of"},
    {"<logging>\n<appender name='a' type='null' pattern='%v %-5'/></logging>", "expected after %: one of"},
    {"<logging>\n<appender name='a' type='null' pattern='%!v'/></logging>", "expected after %: one of"},
    {"<logging>\n<appender name='a' type='rolling-file' path='x' size='0KB'/></logging>", "invalid size=\"0KB\""},
    {"<logging>\n<appender name='a' type='rolling-file' path='x' size='99999999999GB'/></logging>", "expected: a number of bytes"},
    {"<logging>\n<appender name='a' type='rolling-file' path='x' size='5M'/></logging>", "expected: a number of bytes"},
    {"<logging>\n<appender name='a' type='rolling-file' path='x' count='1001'/></logging>", "expected: a number from 0"},
    {"<logging>\n<appender name='a' type='rolling-file' path='x' count='1 '/></logging>", "expected: a number from 0"},
    {"<logging><root>\n<appender-ref ref='a'/></root></logging>", "unknown appender \"a\""},
    {"<logging>\n<appender name='a' type='b'/><root><appender-ref ref='a'/></root></logging>", "type=\"b\""},
    {"<logging><appender name='a' type='null'/>\n<appender name='a' type='null'/></logging>", "duplicate appender \"a\""},
    {"<logging><logger name='Ä'/>\n<logger name='ä'/></logging>", "duplicate \"ä\""},
    {"<logging><root/>\n<root/></logging>", "duplicate element"},
    {"<logging><appender name='a' type='file' path='b/../p/x'/>\n<appender name='b' type='file' path='./p//x'/></logging>", "\"a\" writes the same file"},
    {"<logging/>\nrest", "unexpected content outside <logging>"},
    {"\nrest<logging/>", "unexpected content outside <logging>"},
    {"\n\r\rrest<logging/>", "unexpected content outside <logging>"},
    {"<logging/>\n<logging><root level='info'/></logging>", "unexpected content outside <logging>"},
};
// clang-format on

TEST(ReadConfiguration, ReportsOneFaultWithItsLine)
{
    for (const Broken& row : BrokenOnes)
    {
        SCOPED_TRACE(row.text);
        const auto faults = FaultsOf(row.text);
        ASSERT_EQ(faults.size(), 1U);
        EXPECT_EQ(faults[0].line, 2U);
        EXPECT_THAT(faults[0].text, HasSubstr(row.fault));
    }
}

TEST(ReadConfiguration, ListsTheFirstHundredFaults)
{
    std::string text = "<logging>";
    for (int i = 0; i < 1000; ++i)
        text += "\n<x/>";
    const auto faults = FaultsOf(text + "</logging>");
    ASSERT_EQ(faults.size(), 101U);
    EXPECT_EQ(faults[99].line, 101U);
    EXPECT_THAT(faults[100].text, HasSubstr("too many faults"));
}

TEST(ReadConfiguration, RefusesAFileAsAWhole)
{
    EXPECT_EQ(FaultsOf("<logging><logger name=\"Tr\xE4ger\"/></logging>").at(0).text, "the file is not in UTF-8");
    EXPECT_EQ(FaultsOf(std::string((16U << 20) + 1, ' ')).at(0).text, "the file is larger than 16 MB");
}
} // namespace
