#include "registry/RegistryText.h"

#include <bit>
#include <cstring>
#include <iterator>
#include <utf8.h>

namespace Quenlor::StandIn::Registry
{
namespace
{
static_assert(std::endian::native == std::endian::little, "units and numbers are stored as they are in memory");

constexpr char16_t EscapedByte = 0xDC00; // plus a byte of 0x80 and above

constexpr bool IsHighSurrogate(char16_t unit) noexcept
{
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool IsLowSurrogate(char16_t unit) noexcept
{
    return (unit & 0xFC00) == 0xDC00;
}

std::u16string ToUtf16(std::string_view text)
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
    return units;
}
} // namespace

std::string ToUtf16Le(std::string_view text)
{
    const std::u16string units = ToUtf16(text);
    return {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t)};
}

std::string FromUtf16Le(std::string_view bytes)
{
    std::u16string units(bytes.size() / sizeof(char16_t), u'\0');
    std::memcpy(units.data(), bytes.data(), units.size() * sizeof(char16_t));
    std::string text;
    for (auto next = units.cbegin(); next != units.cend();)
    {
        const char16_t unit = *next++;
        if (unit >= EscapedByte + 0x80 && unit <= EscapedByte + 0xFF)
            text += static_cast<char>(unit - EscapedByte);
        else if (IsHighSurrogate(unit) && next != units.cend() && IsLowSurrogate(*next))
        {
            ++next;
            utf8::unchecked::utf16to8(next - 2, next, std::back_inserter(text));
        }
        else
            utf8::unchecked::append(IsHighSurrogate(unit) || IsLowSurrogate(unit) ? 0xFFFD : unit,
                                    std::back_inserter(text));
    }
    return text;
}

std::size_t Utf16Length(std::string_view text)
{
    return ToUtf16(text).size();
}
} // namespace Quenlor::StandIn::Registry
