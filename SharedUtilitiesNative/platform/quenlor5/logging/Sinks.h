#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "logging/Configuration.h"

namespace spdlog
{
class formatter;
} // namespace spdlog

namespace Quenlor::NativeLogging
{
struct Record
{
    LogLevel level;
    std::string_view logger;
    std::string_view text;
    std::chrono::system_clock::time_point time;
};

/// What an appender writes to. Any thread may log.
///
/// Not the formatting library's own sinks: they do not expect other processes to write and roll the same file.
class Sink
{
public:
    Sink(const AppenderSettings& appender, std::string_view lineEnd);
    virtual ~Sink() = default;
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    void Log(const Record& record); ///< Unless the appender's threshold is above the record's level.

protected:
    std::string Format(const Record& record) const;

private:
    virtual void Write(const Record& record) = 0;

    std::mutex m_mutex;
    const LogLevel m_threshold;
    const std::shared_ptr<spdlog::formatter> m_formatter; // for one thread at a time
};

/// The sink of an appender; null for one that writes nowhere. No file is opened before the first record.
/// @param file the result of FileOf for the appender
/// @param place precedes each later failure, which is reported in one line
std::unique_ptr<Sink> MakeSink(const AppenderSettings& appender, const QnFileName& file, std::string place);

/// Writes a line to standard error, and to the debugger, since a program with windows has no standard error.
void Report(const std::string& line) noexcept;
} // namespace Quenlor::NativeLogging
