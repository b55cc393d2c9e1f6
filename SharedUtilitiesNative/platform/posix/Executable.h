#pragma once

#include <string>

namespace Quenlor::Posix
{
constexpr char ExecutableLink[] = "/proc/self/exe"; ///< Opens the running program itself, even when it was replaced.

/// The path that a process was started from, even when another file is there by now.
/// @param link `exe` in the process's folder
/// @return empty when the system does not say
std::string ExecutablePath(const std::string& link = ExecutableLink);
} // namespace Quenlor::Posix
