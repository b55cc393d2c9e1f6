#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>

#include <gmock/gmock.h>

#include "platform/quenlor5/logging/LoggingTest.h"
#include "support/OrdinaryUser.h"

// What only Linux does to logs.

namespace
{
namespace fs = std::filesystem;

class LoggingOnLinux : public LoggingTest
{
protected:
    /// What arrives on standard error while a record is logged as the configuration says.
    std::string Complaints() const
    {
        ::testing::internal::CaptureStderr();
        Activate();
        Logger(L"").Error("record");
        return ::testing::internal::GetCapturedStderr();
    }
};

TEST_F(LoggingOnLinux, WaitsForNoPipeOrDevice)
{
    Configure(ToFile);
    ASSERT_EQ(::mkfifo((m_folder / "a.log").c_str(), 0600), 0);
    EXPECT_THAT(Complaints(), LooksLike(".*log.xml:2: cannot open .*a.log: .*\n"));
    remove(m_folder / "a.log");
    fs::create_symlink("/dev/null", m_folder / "a.log");
    EXPECT_THAT(Complaints(), LooksLike(".*log.xml:2: cannot open .*a.log: .*\n"));
    remove(m_file);
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    EXPECT_THAT(Complaints(), LooksLike(".*log.xml: the file cannot be read: .*\n.* error : record\n"));
}

TEST_F(LoggingOnLinux, KeepsOldFilesWhenTheLogCannotBeRenamed)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs files of two users";
    Configure(R"(<appender name="a" type="rolling-file" path="a.log" size="10" count="2" pattern="%v"/>
                 <root><appender-ref ref="a"/></root>)");
    for (const char* const name : {"a.log", "a.1.log", "a.2.log"})
        WriteFile(m_folder / name, name);
    permissions(m_folder / "a.log", fs::perms::all);
    permissions(m_folder, fs::perms::all | fs::perms::sticky_bit);
    for (const char* const name : {"a.1.log", "a.2.log"})
        ASSERT_EQ(::chown((m_folder / name).c_str(), 65534, 65534), 0);
    {
        const OrdinaryUser user{m_machine.Root()};
        ::testing::internal::CaptureStderr();
        for (int i = 0; i < 5; ++i)
            Logger(L"").Error("a long record");
        EXPECT_THAT(::testing::internal::GetCapturedStderr(), LooksLike(".*: cannot move aside .*\n"));
    }
    std::multiset<std::string> old;
    for (const auto& file : fs::directory_iterator{m_folder})
        old.insert(ReadFile(file).substr(0, 7));
    EXPECT_EQ(old.count("a.1.log") + old.count("a.2.log"), 2U);
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
