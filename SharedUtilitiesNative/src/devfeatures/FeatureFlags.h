#pragma once

#include <cstddef>
#include <string>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
inline constexpr std::size_t FeatureCount = 6;

/// The flag of each feature, in the order of DevFeatureId: built when the library is loaded, only read afterwards.
extern const std::string FeatureFlags[FeatureCount];

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

/// Asks the environment, then the INI file that `iniPath` names or, if that is missing, the one that `provide` makes;
/// each is asked for only when it is needed.
/// @throws what DevFeaturesConfig::IsDevFeatureEnabled throws
FeatureSwitch ReadFeatureSwitch(const std::string& flag, std::string (*iniPath)(), std::string (*provide)() = nullptr);
} // namespace Quenlor::Fraxo::SharedUtilities::Native
