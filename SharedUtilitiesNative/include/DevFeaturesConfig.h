#pragma once

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// Features under development, each with a switch. The values are fixed: they index the table of flag names.
enum class DevFeatureId : int
{
    Revulytics = 0,
    ChineseSteelDesign = 1,
    IntegratedChineseSteelDesign = 2,
    ChineseResponseSpectrum2010 = 3,
    ChineseWindLoadGB50009_2012 = 4,
    MassModelGenerator = 5,
};

/// Switches for unfinished features, for developers and testers. Nothing is cached; any thread may call.
/// ```cpp
/// if (DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId::MassModelGenerator) != 0)
///     AddMassModelCommand();
/// ```
class SHAREDUTILITIES_EXPORT DevFeaturesConfig final
{
public:
    DevFeaturesConfig() = delete;

    /// Whether a feature is on: 0 is off, anything else on. Its flag ("FPRO_FEATURE_...") decides, first as an
    /// environment variable, which gives 1 when its number is at least 1 and else 0; then as a key of section
    /// DEV_FEATURES of the product's INI file (IniConfig::GetFraxoProIniPath), which is returned as it is.
    /// Off when neither is there, when the INI file cannot be provided, and for an unknown id.
    /// @throws std::invalid_argument "invalid stoi argument" for a flag that is set but not a number
    /// @throws std::out_of_range "stoi argument out of range" for one that does not fit an int
    static int IsDevFeatureEnabled(DevFeatureId id);
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
