#include "Features.h"

#include <algorithm>
#include <stdexcept>

#include <Quenlor/QnFileName.h>

#include "CoreUtilities.h"
#include "ForTools.h"
#include "Terminal.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
std::string Describe(FeatureSwitch::Source source)
{
    switch (source)
    {
    case FeatureSwitch::Source::Environment:
        return "environment";
    case FeatureSwitch::Source::IniFile:
        return "INI file " + ProductIniToRead();
    case FeatureSwitch::Source::None:
        break;
    }
    return "off by default";
}

Feature ReadFeature(const std::string& flag)
{
    try
    {
        const FeatureSwitch found = ReadFeatureSwitch(flag, ProductIniToRead);
        return {flag, found.value, Describe(found.source), {}};
    }
    catch (const std::logic_error& failure) // a value that is no number, or too large a one
    {
        const bool isInEnvironment = !GetEnvironmentVariableValue(flag).empty();
        const auto source = isInEnvironment ? FeatureSwitch::Source::Environment : FeatureSwitch::Source::IniFile;
        return {flag, 0, Describe(source), failure.what()};
    }
}
} // namespace

std::string ProductIniToRead()
{
    try
    {
        const UserFile file = FraxoProIni();
        const bool exists = Quenlor::QnFileName::DoesPathExist(Quenlor::QnFileName{file.path}.GetName());
        return (exists ? file.path : file.installedDefault).ToStdString();
    }
    catch (const std::runtime_error&)
    {
        return {}; // no folder for it: then the switches are off
    }
}

std::vector<Feature> ReadFeatures()
{
    std::vector<Feature> features;
    std::ranges::transform(FeatureFlags, std::back_inserter(features), ReadFeature);
    return features;
}

std::string Format(const std::vector<Feature>& features)
{
    std::size_t width = 0;
    for (const Feature& feature : features)
        width = std::max(width, feature.flag.length());
    std::string table;
    for (const Feature& feature : features)
    {
        table.append(feature.flag).append(width - feature.flag.length() + 2, ' ');
        if (!feature.failure.empty())
            table.append(Coloured("unusable", Colour::Bad))
                .append(" value in the ")
                .append(feature.source)
                .append(": ")
                .append(feature.failure);
        else
            table.append(feature.value == 0 ? "off" : Coloured("on ", Colour::Good))
                .append("  ")
                .append(feature.source);
        table.append("\n");
    }
    return table;
}
} // namespace FraxoInfo
