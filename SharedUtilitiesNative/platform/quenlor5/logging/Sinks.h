#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include <spdlog/sinks/base_sink.h>

#include "logging/Configuration.h"

namespace Quenlor::NativeLogging
{
spdlog::level::level_enum ToSpdlog(LogLevel level) noexcept;

/// What an appender writes to. base_sink serialises the records of all threads, and holds formatter and threshold.
class Sink : public spdlog::sinks::base_sink<std::mutex>
{
public:
    /// Gives files back, since no more records are to be expected. One that comes all the same is written, and keeps
    /// nothing open: another thread chose the sink before its configuration was replaced.
    void Close();

private:
    virtual void Write(std::string_view line) = 0;
    virtual void CloseFile() {}

    void sink_it_(const spdlog::details::log_msg& record) final;
    void flush_() final {} // every record is handed to the system at once

    bool m_isClosed = false;
};

/// The sink of an appender; null for one that writes nowhere. No file is opened before the first record.
/// @param file what FileOf answers for the appender
/// @param place stands before what goes wrong later, which is told in one line on standard error
std::unique_ptr<Sink> MakeSink(const AppenderSettings& appender, const QnFileName& file, std::string place);
} // namespace Quenlor::NativeLogging
