// Any file as a logging configuration: each fault is reported in one line, and the rest of the file can be used.

#include <algorithm>
#include <string>
#include <vector>

#include "Fuzz.h"
#include "logging/LoggerPlan.h"
#include "logging/Sinks.h"

using namespace Quenlor;
using namespace Quenlor::NativeLogging;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = TextOf(data, size);
    const QnFileName file{Utf8String{FileOf(text)}};
    std::vector<Fault> faults;
    const auto configuration = ReadConfiguration(file, faults);
    Check(configuration || !faults.empty());
    if (configuration)
    {
        for (AppenderSettings appender : configuration->appenders) // a pattern that was accepted formats any record
        {
            appender.type = AppenderType::Debugger; // which does nothing here
            MakeSink(appender, {}, "")->Log({LogLevel::Critical, "Editor", "text", {}});
        }
        for (const auto& [key, logger] : configuration->loggers)
        {
            const std::string name = QnFileName{WString{key}}.GetNameUtf8().ToStdString() + ".x";
            std::vector<Fault> more; // each logger may have those of all appenders
            PlanLogger(*configuration, {.logger = name, .process = "1", .named = {}}, more);
            if (!more.empty())
                faults.push_back(more.front());
        }
    }
    const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
    for (const Fault& fault : faults)
    {
        Check(!fault.text.empty() && fault.line <= lines);
        Check(FormatFault(file, fault).find('\n') == std::string::npos);
    }
    return 0;
}
