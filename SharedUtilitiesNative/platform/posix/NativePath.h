#pragma once

#include <string>
#include <string_view>

#include "posix/ReadFile.h"

namespace Quenlor::Posix
{
/// A path of the library (UTF-8, `\` or `/` between the parts) as this system takes it, see QnFileName::ToNativePath.
/// @param exists whether something has that name
std::string NativePath(std::string_view path, bool& exists);

/// Opens the file that NativePath would name, as OpenFile does. No other call comes before the open, which itself shows
/// whether the exact spelling is there.
RegularFile OpenForReading(std::string_view path);
} // namespace Quenlor::Posix
