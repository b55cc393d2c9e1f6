#pragma once

#include <Platform/Win32.h>
#include <Quenlor/Utf8String.h>

#include "RegistryHelper.h"
#include "VersionConfig.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The key of this release below "Quenlor", for what installers and support write. The user's own settings have
/// another one, RegistryHelper::GetCurrentUserKey(), below "Quenlor Systems".
inline Utf8String ProductKey()
{
    return R"(SOFTWARE\Quenlor\)" + VersionConfig::GetVersionStamp();
}

/// The key below HKEY_CURRENT_USER for the settings of a release: each has one of its own.
inline Utf8String UserKeyOf(const Utf8String& release)
{
    return R"(Software\Quenlor Systems\)" + VersionConfig::GetProductKey() + R"(\)" + release;
}

/// A text of the record that the installer leaves; empty when it is missing.
inline Utf8String InstallationRecord(const char* name)
{
    return RegistryHelper::GetStringValue(HKEY_CLASSES_ROOT, VersionConfig::GetVersionStamp(), name, {});
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
