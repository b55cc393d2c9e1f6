#include "LogSetup.h"

#include <string>

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace FraxoInfo;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class LogSetupTest : public ::testing::Test
{
protected:
    LogSetup Examine() const
    {
        Quenlor::QnFileName executable;
        executable.SetNameUtf8((m_programs + "Editor.exe").c_str());
        return ExamineLog(executable, false);
    }

    ScratchMachine m_machine;
    const std::string m_programs = m_machine.Folder("Programs");
    const std::string m_machineData = m_machine.ProductFolder(ShellFolder::ProgramData);
    const std::string m_userData = m_machine.ProductFolder(ShellFolder::LocalAppData);
};

TEST_F(LogSetupTest, TellsWhichFileCountsAndWhy)
{
    EXPECT_EQ(Format(Examine()), "Logger         Editor\n"
                                 "Configuration  " +
                                     m_machineData +
                                     "FraxoPro.log.xml  [missing]\n"
                                     "Chosen because there is none beside the executable, " +
                                     m_programs +
                                     "FraxoPro.log.xml\n"
                                     "Level          warning\n"
                                     "Appender       \"console\" to standard error\n"
                                     "Appender       \"debugger\" to the debugger\n");

    WriteFile(NativePath(m_programs + "FraxoPro.log.xml"), "<logging/>");
    EXPECT_THAT(Format(Examine()), HasSubstr("Configuration  " + m_programs +
                                             "FraxoPro.log.xml  [exists]\n"
                                             "Chosen because it is beside the executable, and wins over " +
                                             m_machineData + "FraxoPro.log.xml\n"));
}

TEST_F(LogSetupTest, ShowsWhatTheLoggerDoesAndEveryFaultOfTheFileWithoutOpeningALog)
{
    WriteFile(NativePath(m_machineData + "FraxoPro.log.xml"), R"(<logging>
        <appender name="r" type="rolling-file" path="${LocalAppData}Logs/${logger}-${pid}.log" threshold="error" count="7"/>
        <appender name="unused" type="file" path="${env:FRAXO_PRO_UNSET}/a.log"/>
        <root level="info"><appender-ref ref="r"/></root>
        <logger name="Editor" level="debug"><appender-ref ref="unknown"/></logger>
        </logging>)");
    const LogSetup setup = Examine();
    EXPECT_TRUE(setup.exists);
    const std::string file = (NativePath(m_userData) / "Logs" / "Editor-${pid}.log").string();
    EXPECT_THAT(setup.lines,
                ElementsAre("Level          debug", "Appender       \"r\" to " + file +
                                                        ", 10485760 bytes, and 7 older ones, from level error"));
    EXPECT_THAT(setup.faults, ElementsAre(HasSubstr("FraxoPro.log.xml:5: <appender-ref>: unknown appender"),
                                          HasSubstr("FraxoPro.log.xml:3: <appender>: \"unused\" is ignored")));
    EXPECT_FALSE(exists(NativePath(m_userData)));
}

TEST_F(LogSetupTest, KeepsValuesOfTheEnvironmentPrivate)
{
    m_machine.SetEnvironment("FRAXO_PRO_SECRET", "secret");
    WriteFile(NativePath(m_machineData + "FraxoPro.log.xml"), R"(<logging>
        <appender name="a" type="file" path="${env:FRAXO_PRO_SECRET}/${logger}.log"/>
        <root><appender-ref ref="a"/></root>
        <logger name="Editor" additivity="false"/></logging>)");
    EXPECT_THAT(Examine().faults, ElementsAre(HasSubstr("FraxoPro.log.xml:4: no appender is left")));
    WriteFile(NativePath(m_machineData + "FraxoPro.log.xml"), R"(<logging>
        <appender name="a" type="file" path="${env:FRAXO_PRO_SECRET}/${logger}.log"/>
        <root><appender-ref ref="a"/></root></logging>)");
    EXPECT_THAT(Examine().lines, ElementsAre(HasSubstr("warning"), HasSubstr("${env:FRAXO_PRO_SECRET}/${logger}.log")));
}
} // namespace
