#pragma once

#include <string>
#include <string_view>

#include <Platform/Win32.h>

namespace Quenlor::StandIn::Registry
{
/// Takes the first name off a path. Backslashes before, between and after the names do not matter.
/// @return false when there is none left.
bool NextLevel(std::string_view& path, std::string_view& level) noexcept;

/// Adds the names of `below` to a path that has single backslashes between its names and none at its ends; so has the
/// result. Either may be empty.
void AppendToPath(std::string& path, std::string_view below);

/// Whether a key of this path can be created: the names, the depth and the whole path are within the limits, and no
/// name has a line break, because a registry file cannot hold it.
bool IsLegalKeyPath(std::string_view path);
bool IsLegalValueName(std::string_view name);

/// `HKEY_LOCAL_MACHINE` and the like for a predefined key that the stand-in has; empty for any other handle.
std::string_view RootName(HKEY root) noexcept;
/// The predefined key of that full name, spelled in any case; null when the stand-in has none.
HKEY RootOfName(std::string_view name);
} // namespace Quenlor::StandIn::Registry
