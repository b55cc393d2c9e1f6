#include "System.h"

#include <cstdlib>

#include <Platform/Win32.h>
#include <shlobj.h>

namespace FraxoInfo
{
bool IsOutputTerminal()
{
    const HANDLE console = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0; // there is none when the output is not a console
    return ::GetConsoleMode(console, &mode) != 0 &&
           ::SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::vector<std::string> EnvironmentNames()
{
    std::vector<std::string> names;
    for (char** variable = _environ; variable && *variable; ++variable)
    {
        const std::string_view text{*variable};
        names.emplace_back(text.substr(0, text.find('=')));
    }
    return names;
}

bool CanWrite(const std::filesystem::path& path)
{
    const bool isFolder = is_directory(path);
    const HANDLE opened = ::CreateFileW(path.c_str(), isFolder ? FILE_ADD_FILE : FILE_APPEND_DATA,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                        isFolder ? FILE_FLAG_BACKUP_SEMANTICS : 0, nullptr);
    return opened != INVALID_HANDLE_VALUE && ::CloseHandle(opened) != 0;
}

bool IsAdministrator()
{
    return ::IsUserAnAdmin() != 0;
}

void KeepFilesPrivate() {} // as their folders are

std::vector<std::string> RegistryPlaces()
{
    return {"the system's registry"};
}

std::vector<Finding> ExamineRegistryFiles()
{
    return {}; // the system keeps the registry
}
} // namespace FraxoInfo
