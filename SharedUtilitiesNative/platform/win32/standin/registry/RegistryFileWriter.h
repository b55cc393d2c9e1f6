#pragma once

#include <string>
#include <string_view>

#include "registry/Key.h"

namespace Quenlor::StandIn::Registry
{
enum class RegistryFileForm
{
    Hive,   ///< UTF-8 without mark, LF; a line for a key only where it has values or nothing below it.
    Windows ///< As Windows' registry editor exports: UTF-16LE with mark, CRLF.
};

/// `key` and all below it as a registry file of version 5.00; `path` is its full path, root name included, without a
/// backslash at its end. No value is lost: what the quoted forms cannot hold is written in hexadecimal.
std::string WriteRegistryFile(const Key& key, std::string_view path, RegistryFileForm form);
} // namespace Quenlor::StandIn::Registry
