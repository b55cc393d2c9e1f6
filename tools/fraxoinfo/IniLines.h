#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace FraxoInfo
{
/// A line of an INI file as the library's reader takes it. Comments and empty lines are not among them.
struct IniLine
{
    std::size_t number = 0;
    std::string section; ///< The one that the line begins, or is in.
    std::string key;
    std::string value;
    bool isHeader = false;
    std::string surprise;  ///< What the reader sees that people do not expect; empty when nothing.
    bool isDamage = false; ///< Whether values cannot be found because of that.
};

/// @throws what ReadWholeFile throws
std::vector<IniLine> ReadIniLines(const std::filesystem::path& file);

/// One line each, with `!` and an explanation where it surprises.
std::string Format(const std::vector<IniLine>& lines);

/// The contents of a regular file; a pipe or a device is never opened.
/// @throws std::runtime_error naming the file when it is not one, or cannot be read
std::string ReadWholeFile(const std::filesystem::path& file);
} // namespace FraxoInfo
