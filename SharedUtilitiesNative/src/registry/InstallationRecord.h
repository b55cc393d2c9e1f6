#pragma once

#include <Platform/Win32.h>
#include <Quenlor/Utf8String.h>

#include "RegistryHelper.h"
#include "VersionConfig.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// A text of the record that the installer leaves; empty when it is missing.
inline Utf8String InstallationRecord(const char* name)
{
    return RegistryHelper::GetStringValue(HKEY_CLASSES_ROOT, VersionConfig::GetVersionStamp(), name, {});
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
