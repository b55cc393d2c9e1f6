#include "logging/Sinks.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "platform/quenlor5/logging/LoggingTest.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::NativeLogging;
using namespace std::chrono_literals;

class FileSink : public ::testing::Test
{
protected:
    std::unique_ptr<Sink> Make(AppenderType type = AppenderType::File, unsigned count = 3) const
    {
        AppenderSettings appender{.name = "a", .type = type, .pattern = "%v", .maxSize = 10, .count = count};
        return MakeSink(appender, Quenlor::QnFileName{m_path.wstring()}, "");
    }

    static void Log(const std::unique_ptr<Sink>& sink, const std::string& text, std::chrono::milliseconds time = 0ms)
    {
        sink->Log({LogLevel::Error, "Editor", text, std::chrono::system_clock::time_point{time}});
    }

    ScratchMachine m_machine;
    const std::filesystem::path m_folder = m_machine.Root() / "Logs";
    const std::filesystem::path m_path = m_folder / "a.log";
};

TEST_F(FileSink, FollowsTheNameWhenTheFileIsMovedOrRemoved)
{
    const auto sink = Make();
    Log(sink, "1");
    rename(m_path, m_folder / "moved.log");
    Log(sink, "2");
    EXPECT_EQ(LinesOf(m_folder / "moved.log"), "1\n");
    EXPECT_EQ(LinesOf(m_path), "2\n");
}

TEST_F(FileSink, TriesAgainAfterASecondAndSaysHowManyRecordsAreLost)
{
    const auto sink = Make();
    WriteFile(m_folder, "a file in place of the folder");
    ::testing::internal::CaptureStderr();
    Log(sink, "1", 5000ms);
    Log(sink, "2", 5500ms);
    Log(sink, "3", 6500ms);
    remove(m_folder);
    Log(sink, "4", 7499ms);
    EXPECT_FALSE(exists(m_path));
    Log(sink, "5", 7500ms);
    Log(sink, "6", 7501ms);
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), LooksLike("cannot open .*a.log: .*\n"));
    EXPECT_THAT(LinesOf(m_path), LooksLike("lost records: 4 \\(cannot open .*\\)\n5\n6\n"));
}

using Files = std::map<std::string, std::string>;

/// Sinks with the same file are what programs with the same configuration are.
struct Rolling
{
    const char* name;
    unsigned count;
    Files before;
    std::vector<std::pair<int, std::string>> records; ///< By program.
    Files after;
    const char* complaint = "";
};

TEST_F(FileSink, RollsWithoutLosingWhatIsToBeKept)
{
    // clang-format off
    const Rolling rows[] = {
        {"the last file is continued", 2, {},
         {{0, "record 1"}, {0, "record 2"}, {0, "record 3"}, {0, "4"}, {2, "5"}},
         {{"a.log", "4\n5\n"}, {"a.1.log", "record 3\n"}, {"a.2.log", "record 2\n"}}},
        {"none is kept", 0, {},
         {{0, "1"}, {1, "second 1"}, {1, "second 2"}, {1, "second 3"}, {0, "2"}, {1, "3"}}, {{"a.log", "2\n3\n"}},
         "(cannot move aside .*\n)?"}, // under Wine, a file that is removed while it is open keeps its name
        {"two programs find it full", 3, {},
         {{0, "first 1"}, {1, "second 1"}, {0, "first 2"}, {1, "second 2"}},
         {{"a.log", "second 2\n"}, {"a.1.log", "first 2\n"}, {"a.2.log", "second 1\n"}, {"a.3.log", "first 1\n"}}},
        {"a killed program left a gap", 2, {{"a.2.log", "old 2\n"}},
         {{0, "record 1"}, {0, "record 2"}},
         {{"a.log", "record 2\n"}, {"a.1.log", "record 1\n"}, {"a.2.log", "old 2\n"}}},
        {"a folder is in the way", 2, {{"a.1.log", "old 1\n"}, {"a.2.log", "old 2\n"}, {"a.3.log/x", ""}},
         {{0, "record 1"}, {0, "record 2"}, {0, "record 3"}},
         {{"a.log", "record 1\nrecord 2\nrecord 3\n"}, {"a.1.log", "old 1\n"}, {"a.2.log", "old 2\n"}, {"a.3.log/x", ""}},
         "cannot move aside .*a.log: .*\n"},
    };
    // clang-format on
    for (const Rolling& row : rows)
    {
        SCOPED_TRACE(row.name);
        for (const auto& [name, text] : row.before)
            WriteFile(m_folder / name, text);
        ::testing::internal::CaptureStderr();
        std::unique_ptr<Sink> programs[3];
        for (auto& program : programs)
            program = Make(AppenderType::RollingFile, row.count);
        for (const auto& [program, text] : row.records)
            Log(programs[program], text);
        for (auto& program : programs)
            program.reset();
        EXPECT_THAT(::testing::internal::GetCapturedStderr(), LooksLike(row.complaint));
        Files after;
        for (const auto& entry : std::filesystem::recursive_directory_iterator{m_folder})
        {
            if (entry.is_regular_file())
                after[entry.path().lexically_relative(m_folder).generic_string()] = LinesOf(entry.path());
        }
        EXPECT_EQ(after, row.after);
        remove_all(m_folder);
    }
}
} // namespace
