#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <Platform/Win32.h>

// Between the narrow text of the Reg* functions, which is UTF-8 but may be any bytes, and the UTF-16LE of registry
// files.

namespace Quenlor::StandIn::Registry
{
/// Any bytes survive the way to UTF-16 and back: a byte 0x80 + x that is not part of valid UTF-8 becomes the lone unit
/// U+DC80 + x.
std::string ToUtf16Le(std::string_view text);

/// Other lone surrogates become U+FFFD; half a unit at the end is dropped.
std::string FromUtf16Le(std::string_view bytes);

/// In UTF-16 units.
std::size_t Utf16Length(std::string_view text);

/// Whether values of this type are text, or several.
constexpr bool IsText(DWORD type) noexcept
{
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}
} // namespace Quenlor::StandIn::Registry
