#include "UserSettingsConfig.h"

#include <span>
#include <vector>

#include <Platform/Win32.h>
#include <Quenlor/QnStringUtilities.h>

#include "RegistryHelper.h"
#include "core/NumberConversion.h"
#include "core/Paths.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
using Keys = std::span<const char* const>;

/// The client's two release lines, each in the native and in the 32-bit view; the newer line first.
constexpr const char* ClientKeys[] = {
    R"(SOFTWARE\Quenlor\Plexora Explorer\10.00)",
    R"(SOFTWARE\Wow6432Node\Quenlor\Plexora Explorer\10.00)",
    R"(SOFTWARE\Quenlor\Plexora Explorer\08.11)",
    R"(SOFTWARE\Wow6432Node\Quenlor\Plexora Explorer\08.11)",
};
constexpr Keys BothLines{ClientKeys};
constexpr Keys NewerLine = BothLines.first<2>();
constexpr Keys OlderLine = BothLines.last<2>();

/// The first of the values that is not empty. Later keys are not opened then.
Utf8String FirstText(Keys keys, const char* name)
{
    for (const char* const key : keys)
    {
        const Attempt attempt;
        Utf8String text = RegistryHelper::GetStringValue(HKEY_LOCAL_MACHINE, key, name, {});
        if (!text.empty())
            return text;
        attempt.PassOver();
    }
    return {};
}

Utf8String VersionOf(Keys keys)
{
    return FirstText(keys, "Version");
}
} // namespace

bool UserSettingsConfig::IsPlexoraExplorerInstalled()
{
    return !VersionOf(BothLines).empty();
}

bool UserSettingsConfig::IsMultiplePlexoraExplorerInstalled()
{
    return !VersionOf(NewerLine).empty() && !VersionOf(OlderLine).empty();
}

Utf8String UserSettingsConfig::GetPlexoraExplorerVersionString()
{
    return VersionOf(BothLines);
}

PlexoraExplorerVersion UserSettingsConfig::GetPlexoraExplorerVersionTokens()
{
    std::vector<Utf8String> tokens;
    QnStringUtilities::Split(VersionOf(BothLines).c_str(), ".", nullptr, tokens);
    if (tokens.size() != 3) // four parts, as the client itself writes them, are nothing to its callers
        return {};
    return {LeadingNumber(tokens[0]), LeadingNumber(tokens[1]), LeadingNumber(tokens[2])};
}

Utf8String UserSettingsConfig::GetPlexoraExplorerExecutablePath()
{
    return IfExists(InFolder(FirstText(BothLines, "PathName"), "bin"));
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
