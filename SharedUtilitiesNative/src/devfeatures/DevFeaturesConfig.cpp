#include "DevFeaturesConfig.h"

#include <iterator>
#include <stdexcept>

#include "CoreUtilities.h"
#include "IniConfig.h"
#include "IniReader.h"
#include "core/NumberConversion.h"
#include "devfeatures/FeatureFlags.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
FeatureSwitch ReadFeatureSwitch(const std::string& flag, std::string (*iniPath)())
{
    if (const std::string value = GetEnvironmentVariableValue(flag); !value.empty())
        return {ToInt(value) >= 1 ? 1 : 0, FeatureSwitch::Source::Environment};
    constexpr char section[] = "DEV_FEATURES";
    IniReader reader;
    if (!reader.LoadFile(iniPath()))
        return {};
    const int value = reader.GetIntegerValue(section, flag, 0); // as it is: callers take -1 for on
    const bool isThere = !reader.GetStringValue(section, flag, {}).empty();
    return {value, isThere ? FeatureSwitch::Source::IniFile : FeatureSwitch::Source::None};
}

int DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId id)
{
    const auto index = static_cast<unsigned>(id); // a negative id is a large one
    if (index >= std::size(FeatureFlags))
        return 0;
    const auto iniPath = []() -> std::string
    {
        try
        {
            return IniConfig::GetFraxoProIniPath().ToStdString();
        }
        catch (const std::runtime_error&) // a feature switch must never keep a program from starting
        {
            return {};
        }
    };
    return ReadFeatureSwitch(FeatureFlags[index], iniPath).value;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
