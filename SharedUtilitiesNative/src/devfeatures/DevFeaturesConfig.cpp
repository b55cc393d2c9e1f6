#include "DevFeaturesConfig.h"

#include <iterator>
#include <stdexcept>

#include "CoreUtilities.h"
#include "IniConfig.h"
#include "IniReader.h"
#include "configfiles/UserFile.h"
#include "core/NumberConversion.h"
#include "devfeatures/FeatureFlags.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
/// Empty when the product's INI file cannot be provided: a feature switch must never keep a program from starting.
std::string PathOrNone(Utf8String (*locate)())
try
{
    return locate().ToStdString();
}
catch (const std::runtime_error&)
{
    return {};
}

std::string ExpectedProductIni()
{
    return PathOrNone([] { return FraxoProIni().path; });
}

std::string ProvidedProductIni()
{
    return PathOrNone(IniConfig::GetFraxoProIniPath);
}
} // namespace

FeatureSwitch ReadFeatureSwitch(const std::string& flag, std::string (*iniPath)(), std::string (*provide)())
{
    if (const std::string value = GetEnvironmentVariableValue(flag); !value.empty())
        return {ToInt(value) >= 1 ? 1 : 0, FeatureSwitch::Source::Environment};
    constexpr char section[] = "DEV_FEATURES";
    IniReader reader;
    // Loading tells whether the file is there: most have been provided long ago, and need not be looked for first.
    if (!reader.LoadFile(iniPath()) && !(provide && reader.LoadFile(provide())))
        return {};
    const int value = reader.GetIntegerValue(section, flag, 0); // as it is: callers take -1 for on
    const bool isThere = !reader.GetStringValue(section, flag, {}).empty();
    return {value, isThere ? FeatureSwitch::Source::IniFile : FeatureSwitch::Source::None};
}

int DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId id)
{
    const auto index = static_cast<unsigned>(id); // a negative id is a large one
    return index < std::size(FeatureFlags)
               ? ReadFeatureSwitch(FeatureFlags[index], ExpectedProductIni, ProvidedProductIni).value
               : 0;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
