#include <fstream>
#include <string>

#include <gmock/gmock.h>

#include "platform/quenlor5/logging/LoggingTest.h"

// What only Windows does to logs.

namespace
{
using LoggingOnWindows = LoggingTest;

TEST_F(LoggingOnWindows, KeepsOldFilesWhileAViewerHoldsTheLog)
{
    Configure(R"(<appender name="a" type="rolling-file" path="a.log" size="10" count="2" pattern="%v"/>
                 <root><appender-ref ref="a"/></root>)");
    WriteFile(m_folder / "a.1.log", "old 1");
    WriteFile(m_folder / "a.2.log", "old 2");
    Logger(L"").Error("a long record");
    {
        const std::ifstream viewer{m_folder / "a.log"}; // does not let others rename the file
        for (int i = 0; i < 5; ++i)
            Logger(L"").Error("a long record");
    }
    EXPECT_EQ(Lines("a.1.log") + Lines("a.2.log") + Lines("a.3.log"), "old 1old 2");
    EXPECT_EQ(Lines("a.log").length(), 6 * std::string{"a long record\n"}.length());
}
} // namespace
