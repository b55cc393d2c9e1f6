#include "logging/Faults.h"

#include <algorithm>
#include <exception>

#include "logging/System.h"

namespace Quenlor::NativeLogging
{
std::string FormatFault(const QnFileName& file, const Fault& fault)
{
    std::string line = NativeName(file);
    if (fault.line != 0)
        line += ":" + std::to_string(fault.line);
    line += ": " + fault.text;
    // A configuration may hold anything, but the report stays one line of text.
    std::ranges::replace_if(
        line, [](char c) { return (c >= '\0' && c < ' ') || c == '\x7F'; }, '?');
    return line;
}

void Report(const std::string& line) noexcept
{
    try
    {
        WriteToConsole(stderr, line + "\n");
        WriteToDebugger(line + "\n");
    }
    catch (const std::exception&) // out of memory: there is no other place to complain
    {
    }
}
} // namespace Quenlor::NativeLogging
