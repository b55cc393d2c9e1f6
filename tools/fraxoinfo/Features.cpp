#include "Features.h"

#include <algorithm>
#include <stdexcept>

#include "CoreUtilities.h"
#include "ForTools.h"
#include "Terminal.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
Feature ReadFeature(const std::string& flag)
{
    const bool isInEnvironment = !GetEnvironmentVariableValue(flag).empty();
    Feature feature{flag, 0, isInEnvironment ? "environment" : "INI file " + ProductIniToRead(), {}};
    try
    {
        const FeatureSwitch found = ReadFeatureSwitch(flag, ProductIniToRead);
        feature.value = found.value;
        if (found.source == FeatureSwitch::Source::None)
            feature.source = "off by default";
    }
    catch (const std::logic_error& failure) // a value that is not a number, or too large
    {
        feature.failure = failure.what();
    }
    return feature;
}
} // namespace

std::string ProductIniToRead()
try
{
    const UserFile file = FraxoProIni();
    return (Exists(Quenlor::QnFileName{file.path}) ? file.path : file.installedDefault).ToStdString();
}
catch (const std::runtime_error&)
{
    return {}; // without a folder for it the switches are off
}

std::vector<Feature> ReadFeatures()
{
    std::vector<Feature> features;
    std::ranges::transform(FeatureFlags, std::back_inserter(features), ReadFeature);
    return features;
}

std::string Format(const std::vector<Feature>& features)
{
    const std::size_t width = std::ranges::max(FeatureFlags, {}, &std::string::length).length();
    std::string table;
    for (const Feature& feature : features)
    {
        const std::string state = feature.value == 0 ? "off" : Coloured("on ", Colour::Good);
        table += fmt::format("{:<{}}  {}\n", feature.flag, width,
                             feature.failure.empty()
                                 ? state + "  " + feature.source
                                 : fmt::format("{} value in the {}: {}", Coloured("unusable", Colour::Bad),
                                               feature.source, feature.failure));
    }
    return table;
}
} // namespace FraxoInfo
