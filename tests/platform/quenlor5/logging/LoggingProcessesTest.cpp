#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/quenlor5/logging/LoggingTest.h"
#include "reliability/Processes.h"

// Several processes that log to one file.

namespace
{
class LoggingProcessesTest : public LoggingTest
{
protected:
    LoggingProcessesTest()
    {
        Configure(R"(<appender name="a" type="file" path="a.log" pattern="%v"/>
                     <root level="info"><appender-ref ref="a"/></root>)");
    }
};

TEST_F(LoggingProcessesTest, EachRecordStaysWholeAndNoneIsLostWhenTheProcessIsKilled)
{
    std::vector<pid_t> children;
    for (const char letter : {'a', 'b', 'c', 'd'})
    {
        children.push_back(Start(
            [letter]
            {
            for (int line = 0; line < 500; ++line)
                Logger(L"").Info(std::string(300, letter));
            return std::raise(SIGKILL);
        }));
    }
    for (const pid_t child : children)
        EXPECT_EQ(ExitCode(child), -1);

    const std::string lines = Lines("a.log");
    EXPECT_EQ(lines.length(), 4U * 500U * 301U);
    for (std::size_t start = 0; start < lines.length(); start += 301)
        ASSERT_EQ(lines.substr(start, 301), std::string(300, lines[start]) + "\n");
}

TEST_F(LoggingProcessesTest, ProgramsThatAreStartedDoNotInheritTheFile)
{
    Logger(L"").Info("");
    std::set<int> inherited;
    bool isOpen = false;
    for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd"})
    {
        std::error_code error; // the iterator's own descriptor is gone when it is asked
        const int descriptor = std::stoi(entry.path().filename());
        if (read_symlink(entry, error) != m_folder / "a.log")
            continue;
        isOpen = true;
        if (!(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC))
            inherited.insert(descriptor);
    }
    EXPECT_TRUE(isOpen);
    EXPECT_EQ(inherited, std::set<int>{});
}
} // namespace
