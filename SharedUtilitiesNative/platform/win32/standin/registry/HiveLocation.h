#pragma once

#include <string>
#include <string_view>

#include <Platform/Win32.h>

namespace Quenlor::StandIn::Registry
{
/// Where a hive lies, in the pieces of its path, so that asking costs no memory. The first is a view of the
/// environment and lives until that changes.
struct HiveLocation
{
    std::string_view base;
    std::string_view folder;
    std::string_view file;

    bool IsNowhere() const noexcept { return base.empty(); }
    bool Is(std::string_view path) const noexcept;
    std::string Path() const; ///< Empty when it is nowhere.
};

/// The place of HKEY_LOCAL_MACHINE's or HKEY_CURRENT_USER's hive by the environment of now: below
/// QUENLOR_REGISTRY_DIR, else the machine's in /var/lib and the user's below XDG_CONFIG_HOME or HOME. Variables that
/// are not absolute paths do not count, so that no place depends on the current directory; nor does any in a program
/// that runs with more rights than its caller has.
HiveLocation LocateHive(HKEY root) noexcept;
} // namespace Quenlor::StandIn::Registry
