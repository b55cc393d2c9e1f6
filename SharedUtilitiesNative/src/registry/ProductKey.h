#pragma once

#include <Quenlor/Utf8String.h>

#include "VersionConfig.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The key of this release below "Quenlor", for what installers and support write. It is not that of the user's own
/// settings, RegistryHelper::GetCurrentUserKey(), which lies below "Quenlor Systems".
inline Utf8String ProductKey()
{
    return R"(SOFTWARE\Quenlor\)" + VersionConfig::GetVersionStamp();
}

/// The key below HKEY_CURRENT_USER for the settings of a release: each has one of its own.
inline Utf8String UserKeyOf(const Utf8String& release)
{
    return R"(Software\Quenlor Systems\)" + VersionConfig::GetProductKey() + R"(\)" + release;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
