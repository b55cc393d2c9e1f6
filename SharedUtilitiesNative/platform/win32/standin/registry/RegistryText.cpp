#include "registry/RegistryText.h"

#include <iterator>
#include <utf8.h>

namespace Quenlor::StandIn::Registry
{
namespace
{
constexpr char16_t EscapedByte = 0xDC00; // plus a byte of 0x80 and above
constexpr char32_t ReplacementCharacter = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t unit) noexcept
{
    return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool IsLowSurrogate(char32_t unit) noexcept
{
    return unit >= 0xDC00 && unit < 0xE000;
}

constexpr bool IsEscapedByte(char32_t unit) noexcept
{
    return unit >= EscapedByte + 0x80 && unit <= EscapedByte + 0xFF;
}
} // namespace

std::string ToUtf16Le(std::string_view text)
{
    std::u16string units;
    for (auto next = text.begin(); next != text.end();)
    {
        const auto invalid = utf8::find_invalid(next, text.end());
        utf8::unchecked::utf8to16(next, invalid, std::back_inserter(units));
        next = invalid;
        if (next != text.end())
            units += static_cast<char16_t>(EscapedByte + static_cast<unsigned char>(*next++));
    }
    std::string bytes;
    bytes.reserve(units.size() * 2);
    for (const char16_t unit : units)
    {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

std::string FromUtf16Le(std::string_view bytes)
{
    const std::size_t end = bytes.size() / 2 * 2;
    const auto unitAt = [bytes, end](std::size_t position)
    {
        const auto byte = [bytes](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
        return position < end ? static_cast<char32_t>(byte(position) | byte(position + 1) << 8) : 0;
    };
    std::string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t position = 0; position < end; position += 2)
    {
        char32_t character = unitAt(position);
        if (IsEscapedByte(character))
        {
            text += static_cast<char>(character - EscapedByte);
            continue;
        }
        if (IsHighSurrogate(character) && IsLowSurrogate(unitAt(position + 2)))
            character = 0x10000 + ((character - 0xD800) << 10) + (unitAt(position += 2) - 0xDC00);
        else if (IsHighSurrogate(character) || IsLowSurrogate(character))
            character = ReplacementCharacter;
        utf8::unchecked::append(character, std::back_inserter(text));
    }
    return text;
}

std::size_t Utf16Length(std::string_view text)
{
    return ToUtf16Le(text).size() / 2;
}

bool IsValidUtf8(std::string_view text) noexcept
{
    return utf8::is_valid(text.begin(), text.end());
}
} // namespace Quenlor::StandIn::Registry
