#include "UserSettingsConfig.h"

#include <Platform/Win32.h>

#include "RegistryHelper.h"
#include "core/NumberConversion.h"
#include "core/Paths.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
constexpr char AdaptBuilder[] = R"(SOFTWARE\Adapt\BUILDERPLUSPATH)";
constexpr char LumConcept[] = R"(SOFTWARE\Lum International\Lum Concept\Integration)";
constexpr char PlanWin[] = R"(SOFTWARE\Wow6432Node\BuildingPlanner)";
constexpr char KRDC[] = R"(SOFTWARE\Wow6432Node\Quenlor\KRDC)";
constexpr char TechnipPipeRack[] = R"(SOFTWARE\Quenlor Systems\Technip Pipe Rack)";
constexpr char MsInfo[] = R"(Software\Microsoft\Shared Tools\MSInfo)";
constexpr char SharedTools[] = R"(Software\Microsoft\Shared Tools Location)";
constexpr char CurrentWord[] = R"(Word.Application\CurVer)";

constexpr char DefaultValue[] = "";

Utf8String Text(HKEY root, const Utf8String& key, const char* name)
{
    return RegistryHelper::GetStringValue(root, key, name, {});
}

/// For the products that record a folder and the name of the program in it.
Utf8String ProgramInInstallFolder(const char* key)
{
    const Utf8String folder = IfExists(PathOf(Text(HKEY_LOCAL_MACHINE, key, "InstallPath")));
    if (folder.empty())
        return {};
    const Utf8String name = Text(HKEY_LOCAL_MACHINE, key, "ProductName");
    return name.empty() ? name : IfExists(InFolder(folder, name + ".exe"));
}

Utf8String InstalledVersion(const char* key)
{
    return Text(HKEY_LOCAL_MACHINE, key, "Version");
}
} // namespace

Utf8String UserSettingsConfig::GetAdaptBuilderPath()
{
    const Attempt users;
    const Utf8String folder = Text(HKEY_CURRENT_USER, AdaptBuilder, DefaultValue);
    if (!folder.empty())
        return folder;
    users.PassOver();
    return Text(HKEY_LOCAL_MACHINE, AdaptBuilder, DefaultValue);
}

Utf8String UserSettingsConfig::GetAdaptBuilderExePath()
{
    return IfExists(InFolder(GetAdaptBuilderPath(), "sbuilder.exe"));
}

Utf8String UserSettingsConfig::GetLumConceptExePath()
{
    for (const char* const name : {"UserFraxoLinkExePath", "LatestConceptExePath"})
    {
        for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) // the machine's entry wins here
        {
            const Attempt attempt;
            const Utf8String program = IfExists(PathOf(Text(root, LumConcept, name)));
            if (!program.empty())
                return program;
            attempt.PassOver();
        }
    }
    return {};
}

// clang-format off
Utf8String UserSettingsConfig::GetPlanWinExePath() { return ProgramInInstallFolder(PlanWin); }
Utf8String UserSettingsConfig::GetPlanWinVersion() { return InstalledVersion(PlanWin); }
Utf8String UserSettingsConfig::GetKRDCExePath()    { return ProgramInInstallFolder(KRDC); }
Utf8String UserSettingsConfig::GetKRDCVersion()    { return InstalledVersion(KRDC); }
// clang-format on

Utf8String UserSettingsConfig::GetFraxoFoundationProductName(bool advanced)
{
    return advanced ? "FRAXO Foundation Adv" : "Fraxo.foundation";
}

Utf8String UserSettingsConfig::GetFraxoFoundationExePath(bool advanced)
{
    const Utf8String product = GetFraxoFoundationProductName(advanced);
    const Utf8String version =
        RegistryHelper::GetStringValue(HKEY_CLASSES_ROOT, product, "LastVersion", advanced ? "5.0" : "7.0");
    return Text(HKEY_CLASSES_ROOT, product + R"(\)" + version, "ExeName");
}

bool UserSettingsConfig::IsWordInstalled()
{
    return !GetWordProgID().empty();
}

Utf8String UserSettingsConfig::GetWordProgID()
{
    return Text(HKEY_CLASSES_ROOT, CurrentWord, DefaultValue);
}

int UserSettingsConfig::GetWordVersionNumber()
{
    Utf8String version = GetWordProgID();
    return version.ReplaceAll("Word.Application.", "") == 1 ? LeadingNumber(version) : 0;
}

Utf8String UserSettingsConfig::GetTechnipExePath()
{
    return IfExists(PathOf(Text(HKEY_LOCAL_MACHINE, TechnipPipeRack, "ExeName")));
}

Utf8String UserSettingsConfig::GetMsInfo32ExePath()
{
    // References such as %SystemRoot% stay in the text, so a path with one does not exist and the folder decides.
    const Attempt attempt;
    const Utf8String recorded =
        IfExists(PathOf(RegistryHelper::GetExpandedStringValue(HKEY_LOCAL_MACHINE, MsInfo, "Path", {})));
    if (!recorded.empty())
        return recorded;
    attempt.PassOver();
    return IfExists(InFolder(Text(HKEY_LOCAL_MACHINE, SharedTools, "MSInfo"), "MSInfo32.exe"));
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
