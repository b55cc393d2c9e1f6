#include "Answer.h"

#include <algorithm>
#include <set>
#include <type_traits>
#include <utility>

#include "DirectoryConfig.h"
#include "IniConfig.h"
#include "LanguageHelper.h"
#include "PerMonitorDPIHelper.h"
#include "RegistryHelper.h"
#include "Terminal.h"
#include "UserSettingsConfig.h"
#include "VersionConfig.h"
#include "XmlConfig.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
using Languages = std::set<Quenlor::Utf8String>;

template<class Result>
Value ToValue(const Result& result)
{
    if constexpr (std::is_same_v<Result, Quenlor::Utf8String>)
        return std::string{result.data(), result.length()};
    else if constexpr (std::is_same_v<Result, Quenlor::QnFileName>)
        return ToValue(result.GetNameUtf8());
    else if constexpr (std::is_same_v<Result, PlexoraExplorerVersion>)
        return fmt::format("{}.{}.{}", result.Major, result.Minor, result.Build);
    else if constexpr (std::is_same_v<Result, Languages>)
        return std::vector<std::string>(result.begin(), result.end());
    else if constexpr (std::is_same_v<Result, int>)
        return std::int64_t{result};
    else
        return result;
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
    return std::is_same_v<Result, Languages> ? Kind::List : KindOfText(name);
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
    const auto* const found = std::ranges::find(files, getter, &std::pair<std::string_view, UserFileOf>::first);
    return found == std::end(files) ? nullptr : found->second;
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
    const auto isMeant = [name](const Operation& operation)
    { return operation.name == name || fmt::format("{}::{}", operation.className, operation.name) == name; };
    const auto found = std::ranges::find_if(Operations, isMeant);
    return found == std::end(Operations) ? nullptr : &*found;
}
} // namespace FraxoInfo
