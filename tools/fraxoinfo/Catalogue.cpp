#include "Catalogue.h"

#include <algorithm>
#include <set>
#include <type_traits>
#include <utility>

#include "DirectoryConfig.h"
#include "IniConfig.h"
#include "LanguageHelper.h"
#include "PerMonitorDPIHelper.h"
#include "RegistryHelper.h"
#include "UserSettingsConfig.h"
#include "VersionConfig.h"
#include "XmlConfig.h"

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

Value ToValue(int number)
{
    return std::int64_t{number};
}

Value ToValue(const PlexoraExplorerVersion& version)
{
    return std::to_string(version.Major) + '.' + std::to_string(version.Minor) + '.' + std::to_string(version.Build);
}

Value ToValue(double number)
{
    return number;
}

Value ToValue(const std::set<Quenlor::Utf8String>& texts)
{
    std::vector<std::string> list;
    list.reserve(texts.size());
    for (const Quenlor::Utf8String& text : texts)
        list.push_back(text.ToStdString());
    return list;
}

/// What a text is, by the name of its getter.
constexpr Kind KindOfText(std::string_view name)
{
    constexpr std::string_view folders[] = {"GetFRAXOProRoot", "GetAdaptBuilderPath",
                                            "GetPlexoraExplorerExecutablePath"};
    if (name.ends_with("Directory") || std::ranges::count(folders, name) != 0)
        return Kind::Directory;
    return name.ends_with("Path") || name.find("Path(") != name.npos ? Kind::File : Kind::Text;
}

template<class Result>
constexpr Kind KindOf(std::string_view name)
{
    if (std::is_same_v<Result, bool>)
        return Kind::Flag;
    if (std::is_arithmetic_v<Result>)
        return Kind::Number;
    return std::is_same_v<Result, std::set<Quenlor::Utf8String>> ? Kind::List : KindOfText(name);
}

using UserFileOf = UserFile (*)();

/// The file that a getter provides for the user; null when it provides none.
constexpr UserFileOf FindUserFile(std::string_view getter)
{
    constexpr std::pair<std::string_view, UserFileOf> files[] = {
        {"GetPluginsIniPath", PluginsIni},
        {"GetFraxoProIniPath", FraxoProIni},
        {"GetCodesIniPath", CodesIni},
        {"GetDbSectionCustomIniPath", DbSectionCustomIni},
        {"GetBDeckLiveLoadVehiclePath", BDeckLiveLoadVehicle},
        {"GetSteelAutoDrafterUserStyleIniPath", SteelAutoDrafterStyleIni},
        {"GetStWizardDefaultStpPath", StWizardDefaultStp},
        {"GetIS875CitiesIniPath", IS875CitiesIni},
        {"GetUserQATFilePath", QuickAccessToolbarXml},
        {"GetUserConnectionTagLinkFilePath", ConnectionTagLinkXml},
    };
    for (const auto& [name, file] : files)
    {
        if (name == getter)
            return file;
    }
    return nullptr;
}

#define ROW(className, name, call)                                                                                     \
    {#className, name, KindOf<decltype(className::call)>(name), [] { return ToValue(className::call); },               \
     FindUserFile(name)},
#define GETTER(className, getter) ROW(className, #getter, getter())
#define WITH_ARGUMENT(className, call) ROW(className, #call, call)

// clang-format off
#define CALLS_OF_LanguageHelper \
    WITH_ARGUMENT(LanguageHelper, GetCurrentLanguageSectionWizardDllPath("Section"))
#define CALLS_OF_UserSettingsConfig \
    WITH_ARGUMENT(UserSettingsConfig, GetRssFeedCategory(0)) \
    WITH_ARGUMENT(UserSettingsConfig, GetRssFeedZone(0)) \
    WITH_ARGUMENT(UserSettingsConfig, GetFraxoFoundationProductName(false)) \
    WITH_ARGUMENT(UserSettingsConfig, GetFraxoFoundationProductName(true)) \
    WITH_ARGUMENT(UserSettingsConfig, GetFraxoFoundationExePath(false)) \
    WITH_ARGUMENT(UserSettingsConfig, GetFraxoFoundationExePath(true)) \
    WITH_ARGUMENT(UserSettingsConfig, IsExeRunning("fraxoinfo"))

constexpr Operation Operations[] = {
#include "PublicGetters.h" // made by the build from the public headers
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
    const auto found = std::ranges::find_if(Operations,
                                            [&](const Operation& operation) {
        return operation.name == plainName && (className.empty() || operation.className == className);
    });
    return found == std::end(Operations) ? nullptr : &*found;
}
} // namespace FraxoInfo
