// Any file as a logging configuration: what is wrong is told in one line each, and what is left of it can be used.

#include <algorithm>
#include <string>
#include <vector>

#include "Fuzz.h"
#include "logging/Configuration.h"
#include "logging/Formatter.h"
#include "logging/LoggerPlan.h"

using namespace Quenlor;
using namespace Quenlor::NativeLogging;

namespace
{
constexpr std::size_t MostLoggers = 8;

void CheckFaults(const QnFileName& file, const std::vector<Fault>& faults, std::size_t lines)
{
    for (const Fault& fault : faults)
    {
        Check(!fault.text.empty() && fault.line <= lines);
        Check(FormatFault(file, fault).find('\n') == std::string::npos);
    }
}

/// A pattern that was accepted formats any record.
void Write(const AppenderSettings& appender)
{
    MakeFormatter(appender.pattern, "\n")({LogLevel::Warning, "Editor", "text", {}});
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = TextOf(data, size);
    QnFileName file;
    file.SetNameUtf8(FileOf(text).c_str());
    std::vector<Fault> faults;
    const auto configuration = ReadConfiguration(file, faults);
    const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
    CheckFaults(file, faults, lines);
    Check(configuration || !faults.empty());
    if (!configuration)
        return 0;

    for (const AppenderSettings& appender : configuration->appenders)
        Write(appender);
    const auto planned = configuration->appenders.size();
    std::vector<std::string> names{"", "Editor.Main"};
    for (const auto& logger : configuration->loggers)
    {
        if (names.size() < MostLoggers)
            names.push_back(logger.first + ".x");
    }
    for (const std::string& name : names)
    {
        faults.clear();
        const LoggerPlan plan = PlanLogger(*configuration, {.logger = name, .process = "1", .named = {}}, faults);
        Check(plan.appenders.size() + faults.size() <= std::max(planned, faults.size()));
        for (const PlannedAppender& appender : plan.appenders)
            Check(appender.position < planned);
        CheckFaults(file, faults, lines);
    }
    return 0;
}
