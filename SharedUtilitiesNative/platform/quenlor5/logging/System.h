#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

// What the engine needs of the operating system: one source per system. NativeName is there too.

namespace Quenlor::NativeLogging
{
/// A file that is only ever appended to, kept open. Programs that this process starts do not inherit it, and it can be
/// renamed while it is open.
class LogFile final
{
public:
    /// Opens the file, which is made if it is missing. Never waits: pipes and devices are refused.
    LogFile(const std::filesystem::path& path, std::error_code& error) noexcept;
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    /// The size; none when another file has that name by now, or no file has it.
    std::optional<std::uintmax_t> SizeAt(const std::filesystem::path& path) const noexcept;

    /// Locks the file against other openings of it, until it is closed.
    /// @return false when another opening has locked it
    bool TryLock() const noexcept;

    /// Hands the text to the system as a whole, after what other processes have appended meanwhile.
    /// @param written is set to how much of it was written, which may be a part when there is an error
    std::error_code Append(std::string_view text, std::size_t& written) noexcept;

private:
    std::intptr_t m_handle; // -1 when no file is open, on both systems
};

/// Not the standard library's: that of mingw-w64 first asks the C runtime, which takes the `?` of a long path's prefix
/// for a wildcard.
void RemoveFile(const std::filesystem::path& path) noexcept;

/// To standard output or standard error, as readable text even where the console has another code page.
void WriteToConsole(std::FILE* stream, std::string_view text);

/// To the debugger that is attached to this process; does nothing on Linux.
void WriteToDebugger(std::string_view text);

/// The value in UTF-8; empty when the variable is not set.
std::string EnvironmentVariable(const std::string& name);

std::string ProcessNumber();
} // namespace Quenlor::NativeLogging
