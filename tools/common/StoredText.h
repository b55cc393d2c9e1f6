#pragma once

#include <string>
#include <string_view>

namespace Tools
{
/// Text that was typed, or stored by another program, in a form that is safe on a terminal: `\x1b` and the like for
/// control characters (C0, DEL, C1) and for bytes that are not UTF-8. The characters of `kept` pass unchanged.
/// @param escape how the number of such a character is formatted
std::string Printable(std::string_view text, std::string_view kept = {}, const char* escape = "\\x{:02x}");

/// The text in small letters, of ASCII and of Latin-1 (`É`). It keeps its length.
std::string Lower(std::string_view text);
} // namespace Tools
