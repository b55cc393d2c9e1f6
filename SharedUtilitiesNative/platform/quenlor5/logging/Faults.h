#pragma once

#include <cstddef>
#include <string>

#include <Quenlor/QnFileName.h>

namespace Quenlor::NativeLogging
{
/// Something wrong with a configuration.
struct Fault
{
    std::size_t line; ///< 0 when it is about the file as a whole.
    std::string text;
};

/// The name of a file as other programs of this system take it, in UTF-8.
std::string NativeName(const QnFileName& file);

/// One line that names file, line and fault; without a line break.
std::string FormatFault(const QnFileName& file, const Fault& fault);

/// Writes a line to standard error, and to the debugger, since a program with windows has no standard error.
void Report(const std::string& line) noexcept;
} // namespace Quenlor::NativeLogging
