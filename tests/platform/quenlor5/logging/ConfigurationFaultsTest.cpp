#include "logging/Configuration.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::NativeLogging;
using ::testing::HasSubstr;

std::vector<Fault> FaultsOf(const std::string& text)
{
    const ScratchMachine machine;
    const auto path = machine.Root() / "log.xml";
    WriteFile(path, text);
    Quenlor::QnFileName file;
    file.SetName(path.wstring().c_str());
    std::vector<Fault> faults;
    ReadConfiguration(file, faults);
    return faults;
}

TEST(ReadConfiguration, FindsNoFaultInWhatIsDocumented)
{
    const auto faults = FaultsOf("\xEF\xBB\xBF"
                                 R"(<?xml version="1.0" encoding="utf-8"?>
        <!-- comments are skipped -->
        <logging>
          <root level="Warning"><appender-ref ref="r"/></root>
          <appender name="c" type="console" target="stdout" pattern="%% %=10!v" threshold="OFF"/>
          <appender name="f" type="file" path="x.log"/>
          <appender name="r" type="rolling-file" path="y.log" size="1GB" count="0"/>
          <appender name="d" type="debugger"/>
          <logger name="Editor" additivity="false" level="trace"/>
        </logging>)");
    EXPECT_EQ(faults.size(), 0U) << faults.front().line << ": " << faults.front().text;
}

struct Broken
{
    const char* name;
    const char* text; ///< Its second line has the fault.
    const char* fault;
};

class BrokenConfiguration : public ::testing::TestWithParam<Broken>
{
};

TEST_P(BrokenConfiguration, HasOneFaultThatNamesTheLine)
{
    const auto faults = FaultsOf(GetParam().text);
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].line, 2U) << faults[0].text;
    EXPECT_THAT(faults[0].text, HasSubstr(GetParam().fault));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(ReadConfiguration, BrokenConfiguration, ::testing::Values(
    Broken{"NoXml", "<logging>\n</root>", "mismatch"},
    Broken{"OtherDocument", "\n<log4j/>", "must be <logging>"},
    Broken{"Element", "<logging>\n<apender/></logging>", "<apender>: unexpected element; expected: appender, logger, root"},
    Broken{"Text", "<logging>\n<root>console</root></logging>", "<root>: unexpected text"},
    Broken{"Attribute", "<logging>\n<root lvl=\"info\"/></logging>", "unknown attribute \"lvl\"; expected: level"},
    Broken{"AttributeOfAnotherType", "<logging>\n<appender name=\"a\" type=\"console\" path=\"x\"/></logging>", "unknown attribute \"path\""},
    Broken{"AttributeTwice", "<logging>\n<root level=\"info\" level=\"info\"/></logging>", "duplicate attribute \"level\""},
    Broken{"NoName", "<logging>\n<logger level=\"info\"/></logging>", "attribute \"name\" is missing"},
    Broken{"NoPath", "<logging>\n<appender name=\"a\" type=\"file\" path=\"\"/></logging>", "attribute \"path\" is missing"},
    Broken{"Type", "<logging>\n<appender name=\"a\" type=\"files\"/></logging>", "unknown type \"files\"; expected: console, file,"},
    Broken{"Level", "<logging>\n<root level=\"loud\"/></logging>", "invalid level=\"loud\"; expected: trace, debug,"},
    Broken{"Flag", "<logging>\n<logger name=\"a\" additivity=\"no\"/></logging>", "expected: true, false"},
    Broken{"Target", "<logging>\n<appender name=\"a\" type=\"console\" target=\"tty\"/></logging>", "expected: stdout, stderr"},
    Broken{"Pattern", "<logging>\n<appender name=\"a\" type=\"null\" pattern=\"%v %q\"/></logging>", "expected after %: one of"},
    Broken{"PatternEnd", "<logging>\n<appender name=\"a\" type=\"null\" pattern=\"%v %-5\"/></logging>", "expected after %: one of"},
    Broken{"SizeZero", "<logging>\n<appender name=\"a\" type=\"rolling-file\" path=\"x\" size=\"0KB\"/></logging>", "invalid size=\"0KB\""},
    Broken{"SizeTooLarge", "<logging>\n<appender name=\"a\" type=\"rolling-file\" path=\"x\" size=\"99999999999GB\"/></logging>", "expected: a number of bytes"},
    Broken{"SizeUnit", "<logging>\n<appender name=\"a\" type=\"rolling-file\" path=\"x\" size=\"5M\"/></logging>", "expected: a number of bytes"},
    Broken{"Count", "<logging>\n<appender name=\"a\" type=\"rolling-file\" path=\"x\" count=\"-1\"/></logging>", "expected: a number from 0"},
    Broken{"UnknownAppender", "<logging><root>\n<appender-ref ref=\"a\"/></root></logging>", "unknown appender \"a\""},
    Broken{"FaultyAppenderOnce", "<logging>\n<appender name=\"a\" type=\"b\"/><root><appender-ref ref=\"a\"/></root></logging>", "type \"b\""},
    Broken{"AppenderTwice", "<logging><appender name=\"a\" type=\"null\"/>\n<appender name=\"a\" type=\"null\"/></logging>", "duplicate appender \"a\""},
    Broken{"LoggerTwice", "<logging><logger name=\"Ä\"/>\n<logger name=\"ä\"/></logging>", "duplicate logger"},
    Broken{"RootTwice", "<logging><root/>\n<root/></logging>", "duplicate element"},
    Broken{"SameFile", "<logging><appender name=\"a\" type=\"file\" path=\"x\"/>\n<appender name=\"b\" type=\"file\" path=\"x\"/></logging>", "\"a\" writes the same file"},
    Broken{"SameFileInOtherWords", "<logging><appender name=\"a\" type=\"file\" path=\"b/../p/x\"/>\n<appender name=\"b\" type=\"file\" path=\"./p//x\"/></logging>", "\"a\" writes the same file"},
    Broken{"TextAfterTheRoot", "<logging/>\nrest", "nothing is expected outside <logging>"},
    Broken{"TextBeforeTheRoot", "\nrest<logging/>", "nothing is expected outside <logging>"},
    Broken{"SecondRoot", "<logging/>\n<logging><root level=\"info\"/></logging>", "nothing is expected outside <logging>"}),
    [](const auto& row) { return std::string{row.param.name}; });
// clang-format on

TEST(ReadConfiguration, ListsOnlySoManyFaults)
{
    std::string text = "<logging>";
    for (int i = 0; i < 1000; ++i)
        text += "\n<x/>";
    const auto faults = FaultsOf(text + "</logging>");
    ASSERT_EQ(faults.size(), 101U);
    EXPECT_EQ(faults[99].line, 101U);
    EXPECT_THAT(faults[100].text, HasSubstr("too many faults"));
}

TEST(ReadConfiguration, RefusesWhatIsNotUtf8)
{
    const auto faults = FaultsOf("<logging><logger name=\"Tr\xE4ger\"/></logging>");
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].text, "the file is not in UTF-8");
}
} // namespace
