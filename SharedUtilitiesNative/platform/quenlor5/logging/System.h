#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

// What the engine needs of the operating system: one source per system.

namespace Quenlor::NativeLogging
{
/// A file that is only ever appended to, kept open. Programs that this process starts do not inherit it, and it can be
/// renamed while it is open.
class LogFile final
{
public:
    /// Opens the file, which is made if it is missing.
    LogFile(const std::filesystem::path& path, std::error_code& error) noexcept;
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    /// Hands the text to the system as a whole, behind what other processes have appended meanwhile.
    std::error_code Append(std::string_view text) noexcept;

private:
    std::intptr_t m_handle; // -1 when no file is open, on both systems
};

/// To standard output or standard error, as readable text also where the console has another code page.
void WriteToConsole(std::FILE* stream, std::string_view text);

/// To the debugger that is attached to this process; Linux has no such thing.
void WriteToDebugger(std::string_view text);

/// The value in UTF-8; none when the variable is not set.
std::optional<std::string> EnvironmentVariable(const std::string& name);

std::string ProcessNumber();
} // namespace Quenlor::NativeLogging
