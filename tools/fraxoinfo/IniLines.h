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
    std::string section; ///< That the line begins, or is in.
    std::string key;
    std::string value;
    bool isHeader = false;
    std::string surprise;  ///< Where the reader sees something else than people do; empty when it does not.
    bool isDamage = false; ///< Whether values cannot be found because of that.
};

/// @throws std::runtime_error naming the file when it is not a file, or cannot be read
std::vector<IniLine> ReadIniLines(const std::filesystem::path& file);

/// A line for each, `!` where it surprises.
std::string Format(const std::vector<IniLine>& lines);

/// The contents of a regular file; a pipe or a device is never opened.
/// @throws std::runtime_error naming the file when it is something else, or cannot be read
std::string ReadWholeFile(const std::filesystem::path& file);
} // namespace FraxoInfo
