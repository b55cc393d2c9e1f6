#pragma once

#include <string>
#include <string_view>

namespace FraxoReg
{
/// The whole file. @throws Failure when it cannot be read
std::string ReadTextFile(const std::string& path);

bool FileExists(const std::string& path) noexcept;

/// Puts a file in place in one step: a reader, and a crash, find the old file or the new one, whole.
/// @throws Failure when it cannot be written, or when something other than a file is there
void WriteTextFile(const std::string& path, std::string_view text);
} // namespace FraxoReg
