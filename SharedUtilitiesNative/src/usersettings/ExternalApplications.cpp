// What other products leave in the registry and on the disk.

#include "UserSettingsConfig.h"

#include <array>
#include <memory>
#include <span>
#include <vector>

#include <Platform/Win32.h>
#include <Quenlor/QnStringUtilities.h>

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
constexpr char DesconWin[] = R"(SOFTWARE\Omnitech\DesconWin)";
constexpr char DesconBrace[] = R"(SOFTWARE\Omnitech\DesconBrace)";
constexpr char MsInfo[] = R"(Software\Microsoft\Shared Tools\MSInfo)";
constexpr char SharedTools[] = R"(Software\Microsoft\Shared Tools Location)";
constexpr char CurrentWord[] = R"(Word.Application\CurVer)";

constexpr char DefaultValue[] = "";

/// The document-management client's two release lines, each in the native and in the 32-bit view; the newer line first.
constexpr const char* ClientKeys[] = {
    R"(SOFTWARE\Quenlor\Plexora Explorer\10.00)",
    R"(SOFTWARE\Wow6432Node\Quenlor\Plexora Explorer\10.00)",
    R"(SOFTWARE\Quenlor\Plexora Explorer\08.11)",
    R"(SOFTWARE\Wow6432Node\Quenlor\Plexora Explorer\08.11)",
};
constexpr std::span BothLines{ClientKeys};

Utf8String Text(HKEY root, const Utf8String& key, const char* name)
{
    return RegistryHelper::GetStringValue(root, key, name, {});
}

Utf8String MachineText(const char* key, const char* name)
{
    return Text(HKEY_LOCAL_MACHINE, key, name);
}

/// For the products that record the path of a program, which may have been deleted since.
Utf8String RecordedProgram(HKEY root, const char* key, const char* name)
{
    return IfExists(QnFileName{Text(root, key, name)});
}

/// For the products that record a folder and the name of the program in it.
Utf8String ProgramInInstallFolder(const char* key)
{
    const Utf8String folder = RecordedProgram(HKEY_LOCAL_MACHINE, key, "InstallPath");
    if (folder.empty())
        return {};
    const Utf8String name = MachineText(key, "ProductName");
    return name.empty() ? name : IfExists(InFolder(folder, name + ".exe"));
}

/// Only these four capitals: "True" and "1" are off, as the products' own installers never write them.
bool IsOn(const char* key, const char* name)
{
    return MachineText(key, name) == "TRUE";
}

Utf8String ClientText(std::span<const char* const> keys, const char* name)
{
    return FirstAnswer(keys, [name](const char* key) { return MachineText(key, name); });
}

struct HandleCloser
{
    void operator()(HANDLE handle) const noexcept { ::CloseHandle(handle); }
};
} // namespace

// clang-format off
Utf8String UserSettingsConfig::GetDesconWinExePath()              { return RecordedProgram(HKEY_LOCAL_MACHINE, DesconWin, "AppFullPath"); }
bool       UserSettingsConfig::IsDesconWinInstalled()             { return !GetDesconWinExePath().empty(); }
bool       UserSettingsConfig::GetDesconWinInterface()            { return IsOn(DesconWin, "Interface"); }
bool       UserSettingsConfig::GetDesconWinAsdCode()              { return IsOn(DesconWin, "DESCONWIN_ASD"); }
bool       UserSettingsConfig::GetDesconWinAsdMetricCode()        { return IsOn(DesconWin, "DESCONWIN_ASD_METRIC"); }
bool       UserSettingsConfig::GetDesconWinLrfdCode()             { return IsOn(DesconWin, "DESCONWIN_LRFD"); }
bool       UserSettingsConfig::GetDesconWinLrfdMetricCode()       { return IsOn(DesconWin, "DESCONWIN_LRFD_METRIC"); }

Utf8String UserSettingsConfig::GetDesconBraceExePath()            { return RecordedProgram(HKEY_LOCAL_MACHINE, DesconBrace, "AppFullPath"); }
bool       UserSettingsConfig::IsDesconBraceInstalled()           { return !GetDesconBraceExePath().empty(); }
bool       UserSettingsConfig::GetDesconBraceInterface()          { return IsOn(DesconBrace, "Interface"); }
bool       UserSettingsConfig::GetDesconBraceAsdCode()            { return IsOn(DesconBrace, "DESCON_BRACE_ASD"); }
bool       UserSettingsConfig::GetDesconBraceAsdMetricCode()      { return IsOn(DesconBrace, "DESCON_BRACE_ASD_METRIC"); }
bool       UserSettingsConfig::GetDesconBraceLrfdCode()           { return IsOn(DesconBrace, "DESCON_BRACE_LRFD"); }
bool       UserSettingsConfig::GetDesconBraceLrfdMetricCode()     { return IsOn(DesconBrace, "DESCON_BRACE_LRFD_METRIC"); }

Utf8String UserSettingsConfig::GetPlanWinExePath()                { return ProgramInInstallFolder(PlanWin); }
Utf8String UserSettingsConfig::GetPlanWinVersion()                { return MachineText(PlanWin, "Version"); }
Utf8String UserSettingsConfig::GetKRDCExePath()                   { return ProgramInInstallFolder(KRDC); }
Utf8String UserSettingsConfig::GetKRDCVersion()                   { return MachineText(KRDC, "Version"); }
Utf8String UserSettingsConfig::GetTechnipExePath()                { return RecordedProgram(HKEY_LOCAL_MACHINE, TechnipPipeRack, "ExeName"); }

Utf8String UserSettingsConfig::GetPlexoraExplorerVersionString()  { return ClientText(BothLines, "Version"); }
bool       UserSettingsConfig::IsPlexoraExplorerInstalled()       { return !GetPlexoraExplorerVersionString().empty(); }
Utf8String UserSettingsConfig::GetPlexoraExplorerExecutablePath() { return IfExists(InFolder(ClientText(BothLines, "PathName"), "bin")); }

Utf8String UserSettingsConfig::GetWordProgID()                    { return Text(HKEY_CLASSES_ROOT, CurrentWord, DefaultValue); }
bool       UserSettingsConfig::IsWordInstalled()                  { return !GetWordProgID().empty(); }
Utf8String UserSettingsConfig::GetAdaptBuilderExePath()           { return IfExists(InFolder(GetAdaptBuilderPath(), "sbuilder.exe")); }
// clang-format on

bool UserSettingsConfig::IsMultiplePlexoraExplorerInstalled()
{
    return !ClientText(BothLines.first(2), "Version").empty() && !ClientText(BothLines.last(2), "Version").empty();
}

PlexoraExplorerVersion UserSettingsConfig::GetPlexoraExplorerVersionTokens()
{
    std::vector<Utf8String> tokens;
    QnStringUtilities::Split(GetPlexoraExplorerVersionString().c_str(), ".", nullptr, tokens);
    if (tokens.size() != 3) // callers take only three: four parts, which the client itself writes, give none
        return {};
    return {LeadingNumber(tokens[0]), LeadingNumber(tokens[1]), LeadingNumber(tokens[2])};
}

Utf8String UserSettingsConfig::GetAdaptBuilderPath()
{
    const auto ask = [](HKEY root) { return Text(root, AdaptBuilder, DefaultValue); };
    return FirstAnswer(std::array{HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}, ask);
}

Utf8String UserSettingsConfig::GetLumConceptExePath()
{
    const auto find = [](const char* name)
    {
        const auto ask = [name](HKEY root) { return RecordedProgram(root, LumConcept, name); };
        return FirstAnswer(std::array{HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}, ask); // the machine's entry wins here
    };
    return FirstAnswer(std::array{"UserFraxoLinkExePath", "LatestConceptExePath"}, find);
}

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

int UserSettingsConfig::GetWordVersionNumber()
{
    Utf8String version = GetWordProgID();
    return version.ReplaceAll("Word.Application.", "") == 1 ? LeadingNumber(version) : 0;
}

Utf8String UserSettingsConfig::GetMsInfo32ExePath()
{
    // References such as %SystemRoot% stay in the text, so a path with one does not exist and the folder decides.
    const Attempt attempt;
    const Utf8String recorded =
        IfExists(QnFileName{RegistryHelper::GetExpandedStringValue(HKEY_LOCAL_MACHINE, MsInfo, "Path", {})});
    if (!recorded.empty())
        return recorded;
    attempt.PassOver();
    return IfExists(InFolder(MachineText(SharedTools, "MSInfo"), "MSInfo32.exe"));
}

bool UserSettingsConfig::IsExeRunning(const Utf8String& exe)
{
    const QnFileName path{exe};
    const bool hasExtension = *QnFileName{QnFileName::Extension, path.GetName()}.GetName() != L'\0';
    const auto compared = [&](const wchar_t* name)
    {
        const QnFileName part{hasExtension ? QnFileName::FileNameAndExtension : QnFileName::BaseName, name};
        return WString{part.GetName()}.ToUpperCase();
    };
    const WString wanted = compared(path.GetName());
    bool isRunning = false;
    const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot != INVALID_HANDLE_VALUE)
    {
        const std::unique_ptr<void, HandleCloser> closer{snapshot};
        PROCESSENTRY32W process{};
        process.dwSize = sizeof process;
        for (BOOL found = ::Process32FirstW(snapshot, &process); found && !isRunning;
             found = ::Process32NextW(snapshot, &process))
            isRunning = compared(process.szExeFile) == wanted;
    }
    if (trace)
        trace->push_back({Source::Kind::System, "the running processes",
                          isRunning ? std::optional{exe.ToStdString()} : std::nullopt, isRunning});
    return isRunning;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
