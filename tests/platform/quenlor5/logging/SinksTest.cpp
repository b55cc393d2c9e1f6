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

namespace
{
using namespace Quenlor::NativeLogging;
using namespace std::chrono_literals;

class FileSink : public LoggingTest
{
protected:
    std::unique_ptr<Sink> Make(AppenderType type) const
    {
        return MakeSink({.name = "a", .type = type, .pattern = "%v", .maxSize = 10, .count = 2},
                        Quenlor::QnFileName{(m_folder / "a.log").wstring()}, "");
    }

    static void Log(const std::unique_ptr<Sink>& sink, const std::string& text, std::chrono::milliseconds time = 0ms)
    {
        sink->Log({LogLevel::Error, "Editor", text, std::chrono::system_clock::time_point{time}});
    }
};

TEST_F(FileSink, TriesAgainAfterASecondAndSaysHowManyRecordsAreLost)
{
    const auto sink = Make(AppenderType::File);
    WriteFile(m_folder, "a file in place of the folder");
    ::testing::internal::CaptureStderr();
    Log(sink, "1", 5000ms);
    Log(sink, "2", 6500ms);
    remove(m_folder);
    Log(sink, "3", 7499ms);
    EXPECT_FALSE(exists(m_folder));
    Log(sink, "4", 7500ms);
    Log(sink, "5", 7501ms);
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), LooksLike("cannot open .*a.log: .*\n"));
    EXPECT_THAT(Lines("a.log"), LooksLike("lost records: 3 \\(cannot open .*\\)\n4\n5\n"));
}

using Files = std::map<std::string, std::string>;

struct Rolling
{
    const char* name;
    Files before;
    std::vector<std::string> records;
    Files after;
};

TEST_F(FileSink, RollsWithoutLosingWhatIsToBeKept)
{
    // clang-format off
    const Rolling rows[] = {
        {"the last file is continued", {}, {"record 1", "record 2", "record 3", "4", "5"},
         {{"a.log", "4\n5\n"}, {"a.1.log", "record 3\n"}, {"a.2.log", "record 2\n"}}},
        {"a killed program left a gap", {{"a.2.log", "old 2\n"}}, {"record 1", "record 2"},
         {{"a.log", "record 2\n"}, {"a.1.log", "record 1\n"}, {"a.2.log", "old 2\n"}}},
        {"a folder is in the way", {{"a.1.log", "old 1\n"}, {"a.2.log", "old 2\n"}, {"a.3.log/x", ""}}, {"record 1", "record 2"},
         {{"a.log", "record 1\nrecord 2\n"}, {"a.1.log", "old 1\n"}, {"a.2.log", "old 2\n"}, {"a.3.log/x", ""}}},
    };
    // clang-format on
    for (const auto& [name, before, records, after] : rows)
    {
        for (const auto& [file, text] : before)
            WriteFile(m_folder / file, text);
        auto first = Make(AppenderType::RollingFile), second = Make(AppenderType::RollingFile);
        for (const std::string& record : records)
        {
            Log(first, record);
            std::swap(first, second); // sinks with the same file are what programs with the same configuration are
        }
        first.reset();
        second.reset();
        Files found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator{m_folder})
        {
            const std::filesystem::path file = entry.path().lexically_relative(m_folder);
            if (entry.is_regular_file())
                found[file.generic_string()] = Lines(file);
        }
        EXPECT_EQ(found, after) << name;
        remove_all(m_folder);
    }
}
} // namespace
