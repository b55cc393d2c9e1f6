#include "logging/Sinks.h"

#include <gmock/gmock.h>

#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor::NativeLogging;

TEST(Sink, KeepsNoFileOpenForARecordThatComesAfterItIsClosed)
{
    const ScratchMachine machine;
    const std::filesystem::path path = machine.Root() / "a.log";
    Quenlor::QnFileName file;
    file.SetName(path.wstring().c_str());
    AppenderSettings appender;
    appender.type = AppenderType::File;
    appender.path = "a.log";
    appender.pattern = "%v";
    const std::unique_ptr<Sink> sink = MakeSink(appender, file, "");
    const auto log = [&sink] { sink->log({"Editor", ToSpdlog(LogLevel::Error), "late"}); };
    log();
    sink->Close();
    log();
    EXPECT_THAT(ReadFile(path), ::testing::MatchesRegex("late\r?\nlate\r?\n"));
    EXPECT_TRUE(remove(path));
    log(); // an open file would take it, and be gone with it
    EXPECT_THAT(ReadFile(path), ::testing::MatchesRegex("late\r?\n"));
}
} // namespace
