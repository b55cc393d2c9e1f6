#include "VersionConfig.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

#include <Platform/Win32.h>
#include <Quenlor/QnFileName.h>

#include "core/Format.h"
#include "core/Trace.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
struct ModuleVersion
{
    std::uint16_t major = 0;
    std::uint16_t minor = 0;
    std::uint16_t build = 0;
    std::uint16_t revision = 0;
};

constexpr std::uint16_t High(DWORD number) noexcept
{
    return static_cast<std::uint16_t>(number >> 16);
}

constexpr std::uint16_t Low(DWORD number) noexcept
{
    return static_cast<std::uint16_t>(number & 0xFFFF);
}

ModuleVersion ReadModuleVersion()
{
    QnFileName executable;
    QnGetModuleFileName(executable, nullptr);
    const Utf8String path = executable.GetNameUtf8();
    DWORD unused = 0;
    const DWORD size = ::GetFileVersionInfoSizeA(path.c_str(), &unused);
    if (size == 0)
        return {};
    std::vector<BYTE> block(size);
    if (!::GetFileVersionInfoA(path.c_str(), 0, size, block.data()))
        return {};
    LPVOID found = nullptr;
    UINT length = 0;
    if (!::VerQueryValueA(block.data(), R"(\)", &found, &length) || length < sizeof(VS_FIXEDFILEINFO))
        return {};
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(found);
    return {High(info.dwFileVersionMS), Low(info.dwFileVersionMS), High(info.dwFileVersionLS),
            Low(info.dwFileVersionLS)};
}

Utf8String TextOf(const ModuleVersion& version)
{
    return Format("%02d.%02d.%02d.%02d", version.major, version.minor, version.build, version.revision);
}

/// Read on first use and kept, a failure as well: a running executable does not change its version.
const ModuleVersion& ExecutableVersion()
{
    static const ModuleVersion version = ReadModuleVersion();
    Note([] { return Source{Source::Kind::System, "the executable's version", TextOf(version).ToStdString(), true}; });
    return version;
}

/// Four numbers and the dots between as sscanf reads them, but also defined for numbers that no int holds.
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
Utf8String VersionConfig::GetConnectedProjectRegistrationKey() { return "21.00.00.00"; } // not 22, on purpose
Utf8String VersionConfig::GetPledgeSeries()                    { return "7"; }
Utf8String VersionConfig::GetFRAXOUpgradeCode()                { return "{2CE036A7-3141-4d84-ADF0-8C13CD58F8C1}"; }
// clang-format on

Utf8String VersionConfig::GetBuildNumber()
{
    return Format("%02d", ExecutableVersion().build);
}

Utf8String VersionConfig::GetProductVersion()
{
    return TextOf(ExecutableVersion());
}

Utf8String VersionConfig::GetVersionStamp()
{
    return GetProductKey() + R"(\)" + GetReleaseNumber();
}

int VersionConfig::CompareVersions(Utf8String first, Utf8String second)
{
    const std::uint64_t left = Pack(first);
    const std::uint64_t right = Pack(second);
    if (left == right)
        return 0;
    return left > right ? 1 : -1;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
