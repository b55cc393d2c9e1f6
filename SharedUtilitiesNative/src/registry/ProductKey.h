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
} // namespace Quenlor::Fraxo::SharedUtilities::Native
