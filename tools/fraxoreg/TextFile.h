#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>

namespace FraxoReg
{
bool FileExists(const std::string& path) noexcept;

/// Puts a file in place in one step; a reader, and a crash, find the old one or the new. The mode is that of all bytes.
/// @throws Failure when it cannot be written, or when something other than a file is there
void WriteTextFile(const std::string& path, std::string_view text, mode_t mode);
} // namespace FraxoReg
