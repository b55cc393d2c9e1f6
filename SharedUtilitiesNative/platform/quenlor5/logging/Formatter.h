#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include <Quenlor/NativeLogging.h>

namespace Quenlor::NativeLogging
{
struct Record
{
    LogLevel level;
    std::string_view logger;
    std::string_view text;
    std::chrono::system_clock::time_point time;
};

/// Gives the line of a record. For one thread at a time.
using Formatter = std::function<std::string(const Record&)>;

/// @param pattern one that ReadConfiguration accepts
Formatter MakeFormatter(const std::string& pattern, std::string_view lineEnd);
} // namespace Quenlor::NativeLogging
