#include "UserSettingsConfig.h"

#include <memory>

#include <Platform/Win32.h>
#include <Quenlor/QnFileName.h>

#include "core/Paths.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
struct SnapshotCloser
{
    using pointer = HANDLE;
    void operator()(HANDLE snapshot) const noexcept { ::CloseHandle(snapshot); }
};
using Snapshot = std::unique_ptr<HANDLE, SnapshotCloser>;

WString FileName(QnFileName::FileNameParts parts, const wchar_t* path)
{
    return WString{QnFileName{parts, path}.GetName()}.ToUpperCase();
}

bool HasProcess(const Utf8String& exe)
{
    const QnFileName path = PathOf(exe);
    const bool hasExtension = !FileName(QnFileName::Extension, path.GetName()).empty();
    const auto compared = hasExtension ? QnFileName::FileNameAndExtension : QnFileName::BaseName;
    const WString wanted = FileName(compared, path.GetName());

    const HANDLE taken = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (taken == INVALID_HANDLE_VALUE)
        return false;
    const Snapshot snapshot{taken};
    PROCESSENTRY32W process{};
    process.dwSize = sizeof process;
    for (BOOL found = ::Process32FirstW(taken, &process); found; found = ::Process32NextW(taken, &process))
    {
        if (FileName(compared, process.szExeFile) == wanted)
            return true;
    }
    return false;
}
} // namespace

bool UserSettingsConfig::IsExeRunning(const Utf8String& exe)
{
    const bool isRunning = HasProcess(exe);
    Note(
        [&]
        {
        return Source{Source::Kind::System, "the running processes",
                      isRunning ? std::optional{exe.ToStdString()} : std::nullopt, isRunning};
    });
    return isRunning;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
