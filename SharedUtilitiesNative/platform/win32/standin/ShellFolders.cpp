#include <Platform/Win32.h>

#include <filesystem>
#include <initializer_list>
#include <string>
#include <system_error>

#include "posix/Environment.h"

namespace
{
/// The first of the variables that has a value.
std::string FirstOf(std::initializer_list<const char*> variables)
{
    for (const char* const variable : variables)
    {
        const std::optional<std::string> value = Quenlor::Posix::EnvironmentVariable(variable);
        if (value && !value->empty())
            return *value;
    }
    return {};
}

std::string MachineData()
{
    const std::string folder = FirstOf({"PROGRAMDATA"});
    return folder.empty() ? "/usr/share" : folder;
}

std::string UserData()
{
    const std::string folder = FirstOf({"LOCALAPPDATA", "XDG_DATA_HOME"});
    if (!folder.empty())
        return folder;
    const std::string home = FirstOf({"HOME"});
    return home.empty() ? home : home + "/.local/share";
}
} // namespace

HRESULT SHGetFolderPathA(HWND, int folder, HANDLE, DWORD, LPSTR path)
{
    if (!path)
        return E_INVALIDARG;
    path[0] = '\0';

    std::string found;
    if ((folder & ~CSIDL_FLAG_CREATE) == CSIDL_COMMON_APPDATA)
        found = MachineData();
    else if ((folder & ~CSIDL_FLAG_CREATE) == CSIDL_LOCAL_APPDATA)
        found = UserData();
    else
        return E_INVALIDARG;
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
