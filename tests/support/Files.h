#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include <Quenlor/Utf8String.h>

// Files as the standard library sees them, for tests of what the library says about them.

/// The file or folder that a path of the library's should name.
inline std::filesystem::path NativePath(const Quenlor::Utf8String& path)
{
    std::u8string text{path.c_str(), path.c_str() + path.length()};
    std::replace(text.begin(), text.end(), u8'\\', static_cast<char8_t>(std::filesystem::path::preferred_separator));
    return text;
}

/// Writes a file byte by byte as given, with its missing folders.
inline void WriteFile(const std::filesystem::path& file, std::string_view content)
{
    std::filesystem::create_directories(file.parent_path());
    std::ofstream{file, std::ios::binary}.write(content.data(), static_cast<std::streamsize>(content.length()));
}

inline std::string ReadFile(const std::filesystem::path& file)
{
    std::ostringstream content;
    content << std::ifstream{file, std::ios::binary}.rdbuf();
    return content.str();
}
