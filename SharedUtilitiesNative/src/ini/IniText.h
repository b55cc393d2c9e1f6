#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

/// What the text of an INI file means. Results are views into the text that was passed.
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

/// The section that a header names; empty when the line is not a header.
constexpr std::string_view HeaderName(std::string_view line) noexcept
{
    // One bracket is enough, and the first and last characters are dropped whatever they are: files in the field rely
    // on it.
    if (IsComment(line) || (line.front() != '[' && line.back() != ']') || line.length() <= 2)
        return {};
    return Trim(line.substr(1, line.length() - 2));
}

/// Whether a line that is not a header has a key and a value, each of which may be empty.
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

/// Takes the first line off the front of `text`.
/// @return that line, trimmed
constexpr std::string_view TakeLine(std::string_view& text) noexcept
{
    const std::size_t length = std::min(text.find('\n'), text.length());
    const std::string_view line = Trim(text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.length()));
    return line;
}

/// Takes the lines up to the next key/value line off the front of `lines`, which have no headers.
/// @return that line, trimmed; empty when there is none
constexpr std::string_view TakeKeyValueLine(std::string_view& lines) noexcept
{
    while (!lines.empty())
    {
        const std::string_view line = TakeLine(lines);
        if (IsKeyValue(line))
            return line;
    }
    return {};
}

/// The lines between a header and the next one.
struct Block
{
    std::string_view section; // empty before the first header
    std::string_view lines;
};

/// Calls `visit(block)` for each block of a file in its order, empty ones included.
///
/// A header has a bracket, so only lines with one are looked at: that takes a tenth of the time of cutting out every
/// line.
template<class Visitor>
void ForEachBlock(std::string_view text, Visitor visit)
{
    std::string_view section;
    std::size_t start = 0;
    std::size_t opening = text.find('[');
    std::size_t closing = text.find(']');
    for (std::size_t bracket; (bracket = std::min(opening, closing)) != text.npos;)
    {
        const std::size_t lineStart = text.rfind('\n', bracket) + 1; // npos + 1 is 0
        const std::size_t lineEnd = std::min(text.find('\n', bracket), text.length());
        const std::string_view name = HeaderName(Trim(text.substr(lineStart, lineEnd - lineStart)));
        if (!name.empty())
        {
            visit(Block{section, text.substr(start, lineStart - start)});
            section = name;
            start = lineEnd;
        }
        // Searched for only when passed: many of one kind must not cost a search for a rare other one each.
        if (opening < lineEnd)
            opening = text.find('[', lineEnd);
        if (closing < lineEnd)
            closing = text.find(']', lineEnd);
    }
    visit(Block{section, text.substr(start)});
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
