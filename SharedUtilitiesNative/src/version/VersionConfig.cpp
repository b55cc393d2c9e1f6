#include "VersionConfig.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <Platform/Win32.h>
#include <Quenlor/QnFileName.h>

#include "core/Trace.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
using ModuleVersion = std::array<DWORD, 4>; // major, minor, build, revision

ModuleVersion ReadModuleVersion()
{
    QnFileName executable;
    QnGetModuleFileName(executable, nullptr);
    const Utf8String path = executable.GetNameUtf8();
    DWORD unused = 0;
    std::vector<BYTE> block(::GetFileVersionInfoSizeA(path.c_str(), &unused));
    LPVOID found = nullptr;
    UINT length = 0;
    if (block.empty() || !::GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !::VerQueryValueA(block.data(), R"(\)", &found, &length) || length < sizeof(VS_FIXEDFILEINFO))
        return {};
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(found);
    return {info.dwFileVersionMS >> 16, info.dwFileVersionMS & 0xFFFF, info.dwFileVersionLS >> 16,
            info.dwFileVersionLS & 0xFFFF};
}

std::string AtLeastTwoDigits(DWORD number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string TextOf(const ModuleVersion& version)
{
    std::string text = AtLeastTwoDigits(version[0]);
    for (std::size_t part = 1; part < version.size(); ++part)
        text += '.' + AtLeastTwoDigits(version[part]);
    return text;
}

/// Read on first use and kept, a failure as well: a running executable does not change its version.
const ModuleVersion& ExecutableVersion()
{
    static const ModuleVersion version = ReadModuleVersion();
    if (trace)
        trace->push_back({Source::Kind::System, "the executable's version", TextOf(version), true});
    return version;
}

/// Four numbers with dots between, as sscanf reads them, but also defined for numbers that no int holds.
std::uint64_t Pack(const Utf8String& version)
{
    const char* next = version.c_str();
    std::uint64_t packed = 0;
    for (int part = 0; part < 4; ++part)
    {
        char* end = nullptr;
        const long long number = next ? std::strtoll(next, &end, 10) : 0; // 0 as well when there is none
        packed = packed << 16 | static_cast<std::uint16_t>(number);       // the cut to 16 bits is intended
        next = next && end != next && *end == '.' ? end + 1 : nullptr;
    }
    return packed;
}
} // namespace

// clang-format off
Utf8String VersionConfig::GetProductFamily()                   { return "FRAXO.PRO VANTIRE"; }
Utf8String VersionConfig::GetProductName()                     { return GetProductFamily(); }
Utf8String VersionConfig::GetProductNameForQuenlorCI()         { return "FRAXO.PRO"; }
Utf8String VersionConfig::GetReleaseNumber()                   { return "22.00.00"; }
Utf8String VersionConfig::GetProductKey()                      { return "FraxoPro"; }
Utf8String VersionConfig::GetConnectedProjectRegistrationKey() { return "21.00.00.00"; } // not this release, on purpose
Utf8String VersionConfig::GetPledgeSeries()                    { return "7"; }
Utf8String VersionConfig::GetFRAXOUpgradeCode()                { return "{2CE036A7-3141-4d84-ADF0-8C13CD58F8C1}"; }
Utf8String VersionConfig::GetVersionStamp()                    { return GetProductKey() + R"(\)" + GetReleaseNumber(); }
Utf8String VersionConfig::GetBuildNumber()                     { return AtLeastTwoDigits(ExecutableVersion()[2]); }
Utf8String VersionConfig::GetProductVersion()                  { return TextOf(ExecutableVersion()); }
// clang-format on

int VersionConfig::CompareVersions(Utf8String first, Utf8String second)
{
    const std::uint64_t left = Pack(first);
    const std::uint64_t right = Pack(second);
    if (left == right)
        return 0;
    return left > right ? 1 : -1;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
