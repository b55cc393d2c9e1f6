#pragma once

#include <string>
#include <string_view>

namespace Quenlor::Posix
{
/// A path of the library (UTF-8, `\` or `/` between the parts) as this system takes it, see QnFileName::ToNativePath.
/// @param exists tells whether something of that name is there
std::string NativePath(std::string_view path, bool& exists);
} // namespace Quenlor::Posix
