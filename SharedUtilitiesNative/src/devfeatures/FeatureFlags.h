#pragma once

#include <string>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The flag of each feature, in the order of DevFeatureId: built when the library is loaded, only read afterwards.
inline const std::string FeatureFlags[] = {
    "FPRO_FEATURE_REVULYTICS",
    "FPRO_FEATURE_CHINESE_STEEL_DESIGN",
    "FPRO_FEATURE_INTEGRATED_CHINESE_STEEL_DESIGN",
    "FPRO_FEATURE_CHINESE_RESPONSE_SPECTRUM_2010",
    "FPRO_FEATURE_CHINESE_WIND_LOAD_GB50009_2012",
    "FPRO_FEATURE_MASS_MODEL_GENERATOR",
};

/// What a flag says, and where.
struct FeatureSwitch
{
    enum class Source
    {
        Environment,
        IniFile,
        None,
    };

    int value = 0; ///< 0 is off.
    Source source = Source::None;
};

/// Asks the environment, then the INI file that `iniPath` names, which is called only when it is needed.
/// @throws what DevFeaturesConfig::IsDevFeatureEnabled throws
FeatureSwitch ReadFeatureSwitch(const std::string& flag, std::string (*iniPath)());
} // namespace Quenlor::Fraxo::SharedUtilities::Native
