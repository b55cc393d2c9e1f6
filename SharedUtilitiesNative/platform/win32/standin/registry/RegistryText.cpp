#include "registry/RegistryText.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
constexpr char32_t EscapedByte = 0xDC00; // plus a byte of 0x80 and above
constexpr char32_t ReplacementCharacter = 0xFFFD;

constexpr unsigned char ByteAt(std::string_view text, std::size_t position) noexcept
{
    return static_cast<unsigned char>(text[position]);
}

constexpr bool IsHighSurrogate(char32_t unit) noexcept
{
    return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool IsLowSurrogate(char32_t unit) noexcept
{
    return unit >= 0xDC00 && unit < 0xE000;
}

constexpr bool IsEscapedByte(char32_t character) noexcept
{
    return character >= EscapedByte + 0x80 && character <= EscapedByte + 0xFF;
}

/// The length that the first byte of a sequence announces; 0 when it can be none.
constexpr std::size_t SequenceLength(unsigned char first) noexcept
{
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return 2;
    if (first >= 0xE0 && first < 0xF0)
        return 3;
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

/// The character at `position`, which moves behind it; the next byte as an escaped one when it starts no valid
/// sequence.
char32_t NextCharacter(std::string_view text, std::size_t& position) noexcept
{
    const unsigned char first = ByteAt(text, position);
    const std::size_t length = SequenceLength(first);
    if (length == 1)
    {
        ++position;
        return first;
    }
    char32_t character = length == 0 ? 0 : static_cast<char32_t>(first & (0x7F >> length));
    bool isValid = length != 0 && text.size() - position >= length;
    for (std::size_t i = 1; isValid && i < length; ++i)
    {
        const unsigned char next = ByteAt(text, position + i);
        isValid = (next & 0xC0) == 0x80;
        character = character << 6 | (next & 0x3F);
    }
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (!isValid || character < smallest[length] || character > 0x10FFFF || IsHighSurrogate(character) ||
        IsLowSurrogate(character))
    {
        ++position;
        return EscapedByte + first;
    }
    position += length;
    return character;
}

void AppendUnit(std::string& bytes, char32_t unit)
{
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
}

void AppendUtf8(std::string& text, char32_t character)
{
    if (character < 0x80)
    {
        text += static_cast<char>(character);
        return;
    }
    if (character < 0x800)
        text += static_cast<char>(0xC0 | character >> 6);
    else
    {
        if (character < 0x10000)
            text += static_cast<char>(0xE0 | character >> 12);
        else
        {
            text += static_cast<char>(0xF0 | character >> 18);
            text += static_cast<char>(0x80 | (character >> 12 & 0x3F));
        }
        text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    }
    text += static_cast<char>(0x80 | (character & 0x3F));
}

char32_t UnitAt(std::string_view bytes, std::size_t position) noexcept
{
    return static_cast<char32_t>(ByteAt(bytes, position) | ByteAt(bytes, position + 1) << 8);
}
} // namespace

std::string ToUtf16Le(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size() * 2);
    for (std::size_t position = 0; position < text.size();)
    {
        const char32_t character = NextCharacter(text, position);
        if (character < 0x10000)
        {
            AppendUnit(bytes, character);
            continue;
        }
        AppendUnit(bytes, 0xD800 + ((character - 0x10000) >> 10));
        AppendUnit(bytes, 0xDC00 + (character & 0x3FF));
    }
    return bytes;
}

std::string FromUtf16Le(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size() / 2);
    const std::size_t end = bytes.size() / 2 * 2;
    for (std::size_t position = 0; position < end; position += 2)
    {
        const char32_t unit = UnitAt(bytes, position);
        if (IsHighSurrogate(unit) && position + 2 < end && IsLowSurrogate(UnitAt(bytes, position + 2)))
        {
            position += 2;
            AppendUtf8(text, 0x10000 + ((unit - 0xD800) << 10) + (UnitAt(bytes, position) - 0xDC00));
        }
        else if (IsEscapedByte(unit))
            text += static_cast<char>(unit - EscapedByte);
        else
            AppendUtf8(text, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? ReplacementCharacter : unit);
    }
    return text;
}

std::size_t Utf16Length(std::string_view text) noexcept
{
    std::size_t length = 0;
    for (std::size_t position = 0; position < text.size();)
        length += NextCharacter(text, position) < 0x10000 ? 1 : 2;
    return length;
}

bool IsValidUtf8(std::string_view text) noexcept
{
    for (std::size_t position = 0; position < text.size();)
    {
        if (IsEscapedByte(NextCharacter(text, position)))
            return false;
    }
    return true;
}
} // namespace Quenlor::StandIn::Registry
