#include "usersettings/InstalledVersion.h"

#include <Platform/Win32.h>

#include "RegistryHelper.h"
#include "UserSettingsConfig.h"
#include "VersionConfig.h"
#include "core/Format.h"
#include "core/NumberConversion.h"
#include "core/Trace.h"
#include "registry/ProductKey.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
constexpr char ProductVersion[] = "ProductVersion";
constexpr int OldestReleaseThatRecords = 22;

Utf8String RecordedVersion(const Utf8String& userKey)
{
    const Attempt attempt;
    Utf8String version = RegistryHelper::GetStringValue(HKEY_CURRENT_USER, userKey + BuildKey, ProductVersion, {});
    if (version.empty())
        attempt.PassOver();
    return version;
}
} // namespace

Utf8String LastVersionBefore(const Utf8String& release)
{
    for (int earlier = LeadingNumber(release) - 1; earlier >= OldestReleaseThatRecords; --earlier)
    {
        const Utf8String version = RecordedVersion(UserKeyOf(Format("%02d.00.00", earlier)));
        if (!version.empty())
            return version;
    }
    // Release 21 never recorded its version: that it left settings has to do.
    return RegistryHelper::CheckIfKeyExists(HKEY_CURRENT_USER, UserKeyOf("21.00.00")) ? "21.00.00.00" : "";
}

Utf8String UserSettingsConfig::GetLastInstalledProductVersion()
{
    const Utf8String version = RecordedVersion(RegistryHelper::GetCurrentUserKey());
    return version.empty() ? LastVersionBefore(VersionConfig::GetReleaseNumber()) : version;
}

void UserSettingsConfig::SetCurrentInstalledProductVersion()
{
    RegistryHelper::SetStringValue(HKEY_CURRENT_USER, RegistryHelper::GetCurrentUserKey() + BuildKey, ProductVersion,
                                   VersionConfig::GetProductVersion());
    SetIsNewVersionInstallFlag(true);
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
