#include <Platform/Win32.h>

#include <string>
#include <string_view>

#include "posix/NativePath.h"
#include "posix/WideText.h"

namespace
{
/// The path in the letter case of the disk; empty when nothing is there.
std::wstring AsOnDisk(std::wstring_view path)
{
    bool exists = false;
    std::wstring found = Quenlor::Posix::WideOf(Quenlor::Posix::NativePath(Quenlor::Posix::Utf8Of(path), exists));
    if (!exists)
        return {};
    // Wide text is as long in another letter case, but not when `.` or `..` was resolved.
    const bool isSameLength = found.length() == path.length();
    for (std::size_t i = 0; i < found.length(); ++i)
    {
        if (found[i] == L'/')
            found[i] = isSameLength ? path[i] : L'\\';
    }
    return found;
}
} // namespace

DWORD GetLongPathNameW(LPCWSTR path, LPWSTR buffer, DWORD size)
{
    const std::wstring found = AsOnDisk(path ? path : L"");
    if (found.empty())
        return 0;
    if (found.length() >= size)
        return static_cast<DWORD>(found.length() + 1);
    buffer[found.copy(buffer, found.length())] = L'\0';
    return static_cast<DWORD>(found.length());
}

DWORD GetShortPathNameW(LPCWSTR path, LPWSTR buffer, DWORD size)
{
    return ::GetLongPathNameW(path, buffer, size);
}
