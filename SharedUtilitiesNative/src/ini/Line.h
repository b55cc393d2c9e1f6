#pragma once

#include <string_view>

/// What the lines of an INI file mean. All texts are views into the one they were found in.
namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
{
/// Exactly blank, \t, \n, \v, \f and \r, whatever the locale.
constexpr bool IsWhiteSpace(char character) noexcept
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

constexpr std::string_view TrimLeft(std::string_view text) noexcept
{
    while (!text.empty() && IsWhiteSpace(text.front()))
        text.remove_prefix(1);
    return text;
}

constexpr std::string_view TrimRight(std::string_view text) noexcept
{
    while (!text.empty() && IsWhiteSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

constexpr std::string_view Trim(std::string_view text) noexcept
{
    return TrimLeft(TrimRight(text));
}

// The functions below take a line that is trimmed already.

constexpr bool IsComment(std::string_view line) noexcept
{
    return line.empty() || line.front() == ';' || line.front() == '#';
}

/// The section that a header names; empty when the line is no header.
constexpr std::string_view HeaderName(std::string_view line) noexcept
{
    // One bracket is enough, and what stands at the two ends is dropped unseen: files in the field rely on it.
    if (IsComment(line) || (line.front() != '[' && line.back() != ']') || line.length() <= 2)
        return {};
    return Trim(line.substr(1, line.length() - 2));
}

/// Whether a line that is no header has a key and a value, each of which may be empty.
constexpr bool IsKeyValue(std::string_view line) noexcept
{
    return !IsComment(line) && line.find('=') != line.npos;
}

constexpr std::string_view KeyOf(std::string_view keyValueLine) noexcept
{
    return TrimRight(keyValueLine.substr(0, keyValueLine.find('=')));
}

constexpr std::string_view ValueOf(std::string_view keyValueLine) noexcept
{
    return TrimLeft(keyValueLine.substr(keyValueLine.find('=') + 1));
}

/// Takes the lines up to the next key/value line from the front of `lines`, which are whole and without headers.
/// @return that line, trimmed; empty when there is none
constexpr std::string_view TakeKeyValueLine(std::string_view& lines) noexcept
{
    while (!lines.empty())
    {
        const auto length = lines.find('\n');
        const std::string_view line = Trim(lines.substr(0, length));
        lines.remove_prefix(length + 1);
        if (IsKeyValue(line))
            return line;
    }
    return {};
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
