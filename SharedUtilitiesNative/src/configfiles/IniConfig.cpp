#include "IniConfig.h"

#include <string>

#include <Platform/Win32.h>

#include "DirectoryConfig.h"
#include "LanguageHelper.h"
#include "VersionConfig.h"
#include "configfiles/UserFile.h"
#include "core/Format.h"
#include "core/Paths.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
/// Every path passes through the path type once, which repairs malformed UTF-8.
Utf8String Located(const Utf8String& path)
{
    return PathOf(path).GetNameUtf8();
}

Utf8String BelowRoot(const char* tail)
{
    return DirectoryConfig::GetFRAXOProRoot() + tail;
}

Utf8String InMachineData(const Utf8String& tail)
{
    return DirectoryConfig::GetProgramDataDirectory() + tail;
}

/// A file of the machine's that the user has under the same relative name.
UserFile CopyOfMachineFile(const Utf8String& tail)
{
    return {InUserDefaults(tail), InMachineData(tail)};
}

Utf8String InCodeDescriptions(const char* name)
{
    return LanguageHelper::GetCodeDescriptionDir() + R"(\)" + name;
}

constexpr char CodesIniName[] = "Codes.ini";
} // namespace

// What a user's copy and its default are called differs where it says so; only the copy's name is returned.
// clang-format off
UserFile PluginsIni()               { return {InUserDefaults(R"(Plugins\Plugins.ini)"), DirectoryConfig::GetPluginsDirectory() + "Plugins.ini"}; }
UserFile FraxoProIni()              { return CopyOfMachineFile(Format("FraxoPro%s.ini", VersionConfig::GetReleaseNumber().c_str())); }
UserFile CodesIni()                 { return CopyOfMachineFile(InCodeDescriptions(CodesIniName)); }
UserFile IS875CitiesIni()           { return CopyOfMachineFile(InCodeDescriptions("IS875Cities.ini")); }
UserFile DbSectionCustomIni()       { return {DirectoryConfig::GetProjectConfigurationDirectory() + R"(Sections\Custom.ini)", DirectoryConfig::GetFraxoSectionDatabaseDirectory() + "Custom.ini"}; }
UserFile BDeckLiveLoadVehicle()     { return {InUserDefaults("LiveLoad.veh"), BelowRoot(R"(FRAXO\LiveLoad.veh)")}; }
UserFile SteelAutoDrafterStyleIni() { return {InUserDefaults(R"(SteelAutoDrafter\Style.ini)"), IniConfig::GetSteelAutoDrafterBaseStyleIniPath()}; }
UserFile StWizardDefaultStp()       { return {InUserDefaults(R"(StWizard\default.stp)"), BelowRoot(R"(FRAXO\default.stp)")}; }

Utf8String IniConfig::GetPluginsIniPath()                   { return Provide(PluginsIni()); }
Utf8String IniConfig::GetFraxoProIniPath()                  { return Provide(FraxoProIni()); }
Utf8String IniConfig::GetCodesIniPath()                     { return Provide(CodesIni()); }
Utf8String IniConfig::GetIS875CitiesIniPath()               { return Provide(IS875CitiesIni()); }
Utf8String IniConfig::GetDbSectionCustomIniPath()           { return Provide(DbSectionCustomIni()); }
Utf8String IniConfig::GetBDeckLiveLoadVehiclePath()         { return Provide(BDeckLiveLoadVehicle()); }
Utf8String IniConfig::GetSteelAutoDrafterUserStyleIniPath() { return Provide(SteelAutoDrafterStyleIni()); }
Utf8String IniConfig::GetStWizardDefaultStpPath()           { return Provide(StWizardDefaultStp()); }

Utf8String IniConfig::GetNativeCodesIniPath()               { return Located(InMachineData(InCodeDescriptions(CodesIniName))); }
Utf8String IniConfig::GetDesignCodesIniDirectory()          { return LanguageHelper::GetCurrentLanguageDirectory(); }
Utf8String IniConfig::GetDbSectionCustomDbiPath()           { return Located(DirectoryConfig::GetProjectConfigurationDirectory() + R"(Sections\Custom.dbi)"); }
Utf8String IniConfig::GetSteelAutoDrafterBaseStyleIniPath() { return Located(InMachineData(R"(SteelAutoDrafter\SCGA-DrgEnv.INI)")); }
Utf8String IniConfig::GetFraxoCommandTblPath()              { return Located(BelowRoot(R"(FRAXO\Fraxread.tbl)")); }
Utf8String IniConfig::GetFraxoMessageTblPath()              { return Located(BelowRoot(R"(FRAXO\Fraxmess.tbl)")); }
Utf8String IniConfig::GetGBSteelIniPath()                   { return Located(InUserDefaults(R"(GBSteelDesign\GBSteelDesign.ini)")); }
// clang-format on

Utf8String IniConfig::GetUserToolPath(int n)
{
    constexpr std::size_t step = 260;
    const Utf8String file = GetPluginsIniPath();
    const Utf8String key = Format("Command#%d", n);
    std::string value(step, '\0');
    // A value that is cut gives one less than the buffer's length, so this never reads again. Callers know values that
    // are cut, and would not know longer ones.
    for (std::size_t count;
         (count = ::GetPrivateProfileStringA("USER-TOOLS", key.c_str(), "", value.data(),
                                             static_cast<DWORD>(value.size()), file.c_str())) >= value.size();)
        value.assign(count + step, '\0');
    // The NULs behind the value stay: callers take the result for text that ends at the first one.
    return PathOf(value).IsAbsolutePath() ? Utf8String{value} : DirectoryConfig::GetPluginsDirectory() + value;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
