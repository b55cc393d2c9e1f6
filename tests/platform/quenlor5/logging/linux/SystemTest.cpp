#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>

#include <gmock/gmock.h>

#include "platform/quenlor5/logging/LoggingTest.h"

// What only Linux does to logs.

namespace
{
using LoggingOnLinux = LoggingTest;

TEST_F(LoggingOnLinux, WaitsForNoPipe)
{
    Configure(ToFile);
    ASSERT_EQ(::mkfifo((m_folder / "a.log").c_str(), 0600), 0);
    EXPECT_THAT(OnStandardError(), LooksLike(".*log.xml:2: cannot open .*a.log: .*\n"));
    remove(m_file);
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    EXPECT_THAT(OnStandardError(), LooksLike(".*log.xml: the file cannot be read: .*\n.* One: .*\n.* Two: .*\n"));
}

TEST_F(LoggingOnLinux, BeginsANewLineAfterARecordThatWasCut)
{
    Configure(ToFile);
    Logger(L"").Error("1");
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{4, limit.rlim_max};
    const auto former = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    Logger(L"").Error("23456");
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, former);
    Logger(L"").Error("7");
    EXPECT_THAT(Lines("a.log"), LooksLike("1\n23\nlost records: 1 .*\n7\n"));
}

TEST_F(LoggingOnLinux, StartedProgramsDoNotInheritTheFile)
{
    Configure(ToFile);
    Logger(L"").Info("");
    EXPECT_EQ(std::system("ls -l /proc/$PPID/fd | grep -q 'a[.]log'"), 0) << "it is not open here";
    EXPECT_NE(std::system("ls -l /proc/self/fd | grep -q 'a[.]log'"), 0);
}
} // namespace
