#include "UserSettingsConfig.h"

#include <Platform/Win32.h>

#include "RegistryHelper.h"
#include "core/Paths.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
constexpr char DesconWin[] = R"(SOFTWARE\Omnitech\DesconWin)";
constexpr char DesconBrace[] = R"(SOFTWARE\Omnitech\DesconBrace)";

Utf8String Text(const char* product, const char* name)
{
    return RegistryHelper::GetStringValue(HKEY_LOCAL_MACHINE, product, name, {});
}

/// The whole path of the executable is recorded.
Utf8String Executable(const char* product)
{
    return IfExists(PathOf(Text(product, "AppFullPath")));
}

/// Nothing but these four capitals: "True" and "1" are off, as the products' own installers never write them.
bool IsOn(const char* product, const char* name)
{
    return Text(product, name) == "TRUE";
}
} // namespace

// clang-format off
Utf8String UserSettingsConfig::GetDesconWinExePath()            { return Executable(DesconWin); }
bool       UserSettingsConfig::IsDesconWinInstalled()           { return !GetDesconWinExePath().empty(); }
bool       UserSettingsConfig::GetDesconWinInterface()          { return IsOn(DesconWin, "Interface"); }
bool       UserSettingsConfig::GetDesconWinAsdCode()            { return IsOn(DesconWin, "DESCONWIN_ASD"); }
bool       UserSettingsConfig::GetDesconWinAsdMetricCode()      { return IsOn(DesconWin, "DESCONWIN_ASD_METRIC"); }
bool       UserSettingsConfig::GetDesconWinLrfdCode()           { return IsOn(DesconWin, "DESCONWIN_LRFD"); }
bool       UserSettingsConfig::GetDesconWinLrfdMetricCode()     { return IsOn(DesconWin, "DESCONWIN_LRFD_METRIC"); }

Utf8String UserSettingsConfig::GetDesconBraceExePath()          { return Executable(DesconBrace); }
bool       UserSettingsConfig::IsDesconBraceInstalled()         { return !GetDesconBraceExePath().empty(); }
bool       UserSettingsConfig::GetDesconBraceInterface()        { return IsOn(DesconBrace, "Interface"); }
bool       UserSettingsConfig::GetDesconBraceAsdCode()          { return IsOn(DesconBrace, "DESCON_BRACE_ASD"); }
bool       UserSettingsConfig::GetDesconBraceAsdMetricCode()    { return IsOn(DesconBrace, "DESCON_BRACE_ASD_METRIC"); }
bool       UserSettingsConfig::GetDesconBraceLrfdCode()         { return IsOn(DesconBrace, "DESCON_BRACE_LRFD"); }
bool       UserSettingsConfig::GetDesconBraceLrfdMetricCode()   { return IsOn(DesconBrace, "DESCON_BRACE_LRFD_METRIC"); }
// clang-format on
} // namespace Quenlor::Fraxo::SharedUtilities::Native
