#include "logging/Formatter.h"

#include <memory>

#include <spdlog/pattern_formatter.h>

// The only source that includes spdlog, which takes seconds to compile.

namespace Quenlor::NativeLogging
{
namespace
{
spdlog::level::level_enum ToSpdlog(LogLevel level) noexcept
{
    static_assert(static_cast<int>(LogLevel::Warning) == spdlog::level::warn);
    static_assert(static_cast<int>(LogLevel::Off) == spdlog::level::off);
    return static_cast<spdlog::level::level_enum>(level);
}

spdlog::string_view_t View(std::string_view text) noexcept
{
    return {text.data(), text.length()};
}
} // namespace

Formatter MakeFormatter(const std::string& pattern, std::string_view lineEnd)
{
    const auto formatter =
        std::make_shared<spdlog::pattern_formatter>(pattern, spdlog::pattern_time_type::local, std::string{lineEnd});
    return [formatter](const Record& record)
    {
        spdlog::memory_buf_t line;
        formatter->format({record.time, {}, View(record.logger), ToSpdlog(record.level), View(record.text)}, line);
        return std::string{line.data(), line.size()};
        };
}
} // namespace Quenlor::NativeLogging
