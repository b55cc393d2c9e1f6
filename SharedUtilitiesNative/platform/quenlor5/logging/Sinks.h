#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "logging/Configuration.h"
#include "logging/Formatter.h"

namespace Quenlor::NativeLogging
{
/// What an appender writes to. Any thread may log.
///
/// Not the formatting library's own sinks, which know nothing of other processes that write and roll the same file.
class Sink
{
public:
    Sink(const AppenderSettings& appender, std::string_view lineEnd);
    virtual ~Sink() = default;
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    void Log(const Record& record); ///< Unless the appender's threshold is above the record's level.

    /// Gives files back, since no more records are to be expected. One that comes all the same is written, and keeps
    /// nothing open: another thread chose the sink before its configuration was replaced.
    void Close();

protected:
    std::string Format(const Record& record) const { return m_format(record); }

private:
    virtual void Write(const Record& record) = 0;
    virtual void CloseFile() {}

    std::mutex m_mutex;
    const LogLevel m_threshold;
    const Formatter m_format;
    bool m_isClosed = false;
};

/// The sink of an appender; null for one that writes nowhere. No file is opened before the first record.
/// @param file what FileOf answers for the appender
/// @param place comes before what goes wrong later, which is reported in one line
std::unique_ptr<Sink> MakeSink(const AppenderSettings& appender, const QnFileName& file, std::string place);
} // namespace Quenlor::NativeLogging
