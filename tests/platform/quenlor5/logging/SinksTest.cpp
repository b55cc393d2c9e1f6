#include "logging/Sinks.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "platform/quenlor5/logging/LoggingTest.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::NativeLogging;
using namespace std::chrono_literals;

// Two sinks with the same file are what two programs with the same configuration are.
class FileSink : public ::testing::Test
{
protected:
    static constexpr AppenderType Rolling = AppenderType::RollingFile;

    std::unique_ptr<Sink> Make(AppenderType type = AppenderType::File, unsigned count = 3) const
    {
        AppenderSettings appender{.name = "a", .type = type, .pattern = "%v", .maxSize = 10, .count = count};
        Quenlor::QnFileName file;
        file.SetName(m_path.wstring().c_str());
        return MakeSink(appender, file, "");
    }

    static void Log(const std::unique_ptr<Sink>& sink, const char* text, std::chrono::milliseconds time = 0ms)
    {
        sink->Log({LogLevel::Error, "Editor", text, std::chrono::system_clock::time_point{time}});
    }

    std::string Lines(const char* name = "a.log") const { return LinesOf(m_folder / name); }

    ScratchMachine m_machine;
    const std::filesystem::path m_folder = m_machine.Root() / "Logs";
    const std::filesystem::path m_path = m_folder / "a.log";
};

TEST_F(FileSink, KeepsNoFileOpenAfterItIsClosed)
{
    const auto sink = Make();
    Log(sink, "early");
    sink->Close();
    Log(sink, "late");
    EXPECT_EQ(Lines(), "early\nlate\n");
    remove(m_path);
    Log(sink, "later"); // an open file would take it, and be gone with it
    EXPECT_EQ(Lines(), "later\n");
}

TEST_F(FileSink, FollowsTheNameWhenTheFileIsMovedOrRemoved)
{
    const auto sink = Make();
    Log(sink, "1");
    rename(m_path, m_folder / "moved.log");
    Log(sink, "2");
    EXPECT_EQ(Lines("moved.log"), "1\n");
    EXPECT_EQ(Lines(), "2\n");
}

TEST_F(FileSink, TriesAgainAfterASecondAndSaysHowManyRecordsAreLost)
{
    const auto sink = Make();
    WriteFile(m_folder, "a file in place of the folder");
    ::testing::internal::CaptureStderr();
    Log(sink, "1", 5000ms);
    Log(sink, "2", 5500ms);
    Log(sink, "3", 6000ms);
    remove(m_folder);
    Log(sink, "4", 6999ms);
    EXPECT_FALSE(exists(m_path));
    Log(sink, "5", 7000ms);
    Log(sink, "6", 7001ms);
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), LooksLike("cannot open .*a.log: .*\n"));
    EXPECT_THAT(Lines(), LooksLike("lost records: 4 \\(cannot open .*\\)\n5\n6\n"));
}

TEST_F(FileSink, KeepsSoManyFullFilesAndContinuesTheLast)
{
    const auto sink = Make(Rolling, 2);
    for (const char* const text : {"record 1", "record 2", "record 3", "4"})
        Log(sink, text);
    Log(Make(Rolling, 2), "5"); // as the next process does
    EXPECT_EQ(Lines(), "4\n5\n");
    EXPECT_EQ(Lines("a.1.log"), "record 3\n");
    EXPECT_EQ(Lines("a.2.log"), "record 2\n");
    EXPECT_FALSE(exists(m_folder / "a.3.log"));
}

TEST_F(FileSink, MutesNoOtherProgramWhenNoOldFilesAreKept)
{
    const auto first = Make(Rolling, 0);
    const auto second = Make(Rolling, 0);
    Log(first, "1");
    for (const char* const text : {"second 1", "second 2", "second 3"})
        Log(second, text);
    Log(first, "2");
    Log(second, "3");
    EXPECT_EQ(Lines(), "2\n3\n");
    EXPECT_FALSE(exists(m_folder / "a.1.log"));
}

TEST_F(FileSink, RollsOnlyOnceWhatTwoProgramsFindFull)
{
    const auto first = Make(Rolling);
    const auto second = Make(Rolling);
    Log(first, "first 1");
    Log(second, "second 1");
    Log(first, "first 2");
    Log(second, "2");
    EXPECT_EQ(Lines("a.3.log") + Lines("a.2.log") + Lines("a.1.log") + Lines(), "first 1\nsecond 1\nfirst 2\n2\n");
}

TEST_F(FileSink, GivesUpNoOldFileWhenItCannotRoll)
{
    WriteFile(m_folder / "a.1.log", "old 1\n");
    WriteFile(m_folder / "a.2.log", "old 2\n");
    WriteFile(m_folder / "a.3.log" / "in the way", "");
    ::testing::internal::CaptureStderr();
    const auto sink = Make(Rolling, 2);
    for (const char* const text : {"record 1", "record 2", "record 3", "record 4"})
        Log(sink, text);
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), LooksLike("cannot move aside .*\n"));
    EXPECT_EQ(Lines(), "record 1\nrecord 2\nrecord 3\nrecord 4\n");
    EXPECT_EQ(Lines("a.1.log") + Lines("a.2.log"), "old 1\nold 2\n");
}

TEST_F(FileSink, FillsTheGapThatAKilledProgramLeft)
{
    WriteFile(m_folder / "a.2.log", "old 2\n");
    const auto sink = Make(Rolling, 2);
    Log(sink, "record 1");
    Log(sink, "record 2");
    EXPECT_EQ(Lines("a.1.log"), "record 1\n");
    EXPECT_EQ(Lines("a.2.log"), "old 2\n");
}
} // namespace
