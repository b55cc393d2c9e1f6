#pragma once

#include <string>
#include <string_view>

namespace Quenlor::Posix
{
// Between wide text and UTF-8; what is malformed becomes U+FFFD.

std::string Utf8Of(std::wstring_view text);
std::wstring WideOf(std::string_view utf8);
} // namespace Quenlor::Posix
