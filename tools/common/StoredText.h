#pragma once

#include <string>
#include <string_view>

namespace Tools
{
/// Text that was stored by other programs, or typed, in a form that is safe on a terminal: `\x1b` and the like for
/// control characters (C0, DEL, C1) and for bytes that are not UTF-8. The characters of `kept` pass unchanged.
std::string Printable(std::string_view text, std::string_view kept = {});
} // namespace Tools
