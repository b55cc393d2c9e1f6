#include <Platform/Win32.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "posix/Environment.h"

using Quenlor::Posix::FirstOf;

namespace
{
std::string UserData()
{
    const std::string folder = FirstOf({"LOCALAPPDATA", "XDG_DATA_HOME"});
    const std::string home = FirstOf({"HOME"});
    return folder.empty() && !home.empty() ? home + "/.local/share" : folder;
}
} // namespace

HRESULT SHGetFolderPathA(HWND, int folder, HANDLE, DWORD, LPSTR path)
{
    if (!path)
        return E_INVALIDARG;
    path[0] = '\0';

    const int kind = folder & ~CSIDL_FLAG_CREATE;
    if (kind != CSIDL_COMMON_APPDATA && kind != CSIDL_LOCAL_APPDATA)
        return E_INVALIDARG;
    std::string found = kind == CSIDL_LOCAL_APPDATA ? UserData() : FirstOf({"PROGRAMDATA"});
    if (kind == CSIDL_COMMON_APPDATA && found.empty())
        found = "/usr/share";
    // A relative folder would differ from program to program, and the library cannot spell a backslash in a name.
    if (!found.starts_with('/') || found.find('\\') != std::string::npos || found.length() >= MAX_PATH)
        return E_FAIL;

    std::error_code error;
    if (folder & CSIDL_FLAG_CREATE)
        std::filesystem::create_directories(found, error);
    if (!std::filesystem::is_directory(found, error))
        return E_FAIL;
    path[found.copy(path, found.length())] = '\0';
    return S_OK;
}
