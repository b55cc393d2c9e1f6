#pragma once

#include <memory>
#include <string>

#include <spdlog/sinks/sink.h>

#include "Configuration.h"

namespace Quenlor::NativeLogging
{
spdlog::level::level_enum ToSpdlog(LogLevel level) noexcept;

/// What an appender writes to; null for one that writes nowhere. No file is opened before the first record.
/// @param file what FileOf answers for the appender
/// @param place stands before what goes wrong later, which is told in one line on standard error
std::unique_ptr<spdlog::sinks::sink> MakeSink(const AppenderSettings& appender, const QnFileName& file,
                                              std::string place);
} // namespace Quenlor::NativeLogging
