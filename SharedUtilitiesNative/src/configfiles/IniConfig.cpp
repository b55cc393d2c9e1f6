#include "IniConfig.h"

#include <string>

#include <Platform/Win32.h>

#include "DirectoryConfig.h"
#include "LanguageHelper.h"
#include "VersionConfig.h"
#include "configfiles/UserFile.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
/// Every path passes through the path type once, which repairs malformed UTF-8.
Utf8String Located(const Utf8String& path)
{
    return QnFileName{path}.GetNameUtf8();
}

Utf8String InMachineData(const Utf8String& tail)
{
    return DirectoryConfig::GetProgramDataDirectory() + tail;
}

/// The user's copy of a file of the machine, under the same relative name.
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

// Where a user's copy and its default have different names, that is intended; the copy's is returned.
// clang-format off
UserFile PluginsIni()               { return {InUserDefaults(R"(Plugins\Plugins.ini)"), DirectoryConfig::GetPluginsDirectory() + "Plugins.ini"}; }
UserFile FraxoProIni()              { return CopyOfMachineFile("FraxoPro" + VersionConfig::GetReleaseNumber() + ".ini"); }
UserFile CodesIni()                 { return CopyOfMachineFile(InCodeDescriptions(CodesIniName)); }
UserFile IS875CitiesIni()           { return CopyOfMachineFile(InCodeDescriptions("IS875Cities.ini")); }
UserFile DbSectionCustomIni()       { return {DirectoryConfig::GetProjectConfigurationDirectory() + R"(Sections\Custom.ini)", DirectoryConfig::GetFraxoSectionDatabaseDirectory() + "Custom.ini"}; }
UserFile BDeckLiveLoadVehicle()     { return {InUserDefaults("LiveLoad.veh"), DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\LiveLoad.veh)"}; }
UserFile SteelAutoDrafterStyleIni() { return {InUserDefaults(R"(SteelAutoDrafter\Style.ini)"), IniConfig::GetSteelAutoDrafterBaseStyleIniPath()}; }
UserFile StWizardDefaultStp()       { return {InUserDefaults(R"(StWizard\default.stp)"), DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\default.stp)"}; }

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
Utf8String IniConfig::GetFraxoCommandTblPath()              { return Located(DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\Fraxread.tbl)"); }
Utf8String IniConfig::GetFraxoMessageTblPath()              { return Located(DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\Fraxmess.tbl)"); }
Utf8String IniConfig::GetGBSteelIniPath()                   { return Located(InUserDefaults(R"(GBSteelDesign\GBSteelDesign.ini)")); }
// clang-format on

Utf8String IniConfig::GetUserToolPath(int n)
{
    const Utf8String file = GetPluginsIniPath();
    const std::string key = "Command#" + std::to_string(n);
    // Callers know values that are cut to this length, and would not know longer ones. The NULs after the value stay:
    // callers take the result for text that ends at the first one.
    std::string value(260, '\0');
    ::GetPrivateProfileStringA("USER-TOOLS", key.c_str(), "", value.data(), static_cast<DWORD>(value.size()),
                               file.c_str());
    return QnFileName{value}.IsAbsolutePath() ? Utf8String{value} : DirectoryConfig::GetPluginsDirectory() + value;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
