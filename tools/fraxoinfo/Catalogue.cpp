#include "Catalogue.h"

#include <algorithm>

#include "DirectoryConfig.h"
#include "RegistryHelper.h"
#include "VersionConfig.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
Value ToValue(const Quenlor::Utf8String& text)
{
    return std::string{text.data(), text.length()};
}

Value ToValue(const Quenlor::QnFileName& path)
{
    return ToValue(path.GetNameUtf8());
}

Value ToValue(bool flag)
{
    return flag;
}

template<auto Getter>
Value Ask()
{
    return ToValue(Getter());
}

// clang-format off
constexpr Operation Operations[] = {
    {"VersionConfig",   "GetProductFamily",                   Kind::Text,      Ask<VersionConfig::GetProductFamily>},
    {"VersionConfig",   "GetProductName",                     Kind::Text,      Ask<VersionConfig::GetProductName>},
    {"VersionConfig",   "GetProductNameForQuenlorCI",         Kind::Text,      Ask<VersionConfig::GetProductNameForQuenlorCI>},
    {"VersionConfig",   "GetReleaseNumber",                   Kind::Text,      Ask<VersionConfig::GetReleaseNumber>},
    {"VersionConfig",   "GetProductKey",                      Kind::Text,      Ask<VersionConfig::GetProductKey>},
    {"VersionConfig",   "GetConnectedProjectRegistrationKey", Kind::Text,      Ask<VersionConfig::GetConnectedProjectRegistrationKey>},
    {"VersionConfig",   "GetPledgeSeries",                    Kind::Text,      Ask<VersionConfig::GetPledgeSeries>},
    {"VersionConfig",   "GetFRAXOUpgradeCode",                Kind::Text,      Ask<VersionConfig::GetFRAXOUpgradeCode>},
    {"VersionConfig",   "GetBuildNumber",                     Kind::Text,      Ask<VersionConfig::GetBuildNumber>},
    {"VersionConfig",   "GetProductVersion",                  Kind::Text,      Ask<VersionConfig::GetProductVersion>},
    {"VersionConfig",   "GetVersionStamp",                    Kind::Text,      Ask<VersionConfig::GetVersionStamp>},

    {"RegistryHelper",  "GetCurrentUserKey",                  Kind::Text,      Ask<RegistryHelper::GetCurrentUserKey>},

    {"DirectoryConfig", "IsRunningFromOutput",                Kind::Flag,      Ask<DirectoryConfig::IsRunningFromOutput>},
    {"DirectoryConfig", "GetFRAXOProRoot",                    Kind::Directory, Ask<DirectoryConfig::GetFRAXOProRoot>},
    {"DirectoryConfig", "GetCurrentExeDirectory",             Kind::Directory, Ask<DirectoryConfig::GetCurrentExeDirectory>},
};
// clang-format on
} // namespace

std::span<const Operation> Catalogue()
{
    return Operations;
}

const Operation* Find(std::string_view name)
{
    const std::size_t qualifier = name.find("::");
    const std::string_view className = qualifier == std::string_view::npos ? "" : name.substr(0, qualifier);
    const std::string_view plainName = className.empty() ? name : name.substr(qualifier + 2);
    const auto found = std::ranges::find_if(
        Operations, [&](const Operation& operation)
        { return operation.name == plainName && (className.empty() || operation.className == className); });
    return found == std::end(Operations) ? nullptr : &*found;
}
} // namespace FraxoInfo
