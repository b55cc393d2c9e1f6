#include <Platform/Win32.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "posix/Executable.h"
#include "posix/ReadFile.h"
#include "posix/WideText.h"

namespace
{
namespace fs = std::filesystem;

struct Process
{
    DWORD id;
    std::wstring fileName;
};

/// A snapshot.
struct ProcessList
{
    std::vector<Process> processes;
    std::size_t next = 0;
};

/// The handle of the only process that can be opened. Callers may leave it open.
HANDLE ThisProcess()
{
    static char process;
    return &process;
}

ProcessList* ListOf(HANDLE snapshot) noexcept
{
    const bool isList = snapshot != INVALID_HANDLE_VALUE && snapshot != ThisProcess();
    return isList ? static_cast<ProcessList*>(snapshot) : nullptr;
}

/// The text of a system file up to its first NUL or line feed; empty when it cannot be read.
std::string FirstWord(const fs::path& file)
{
    const Quenlor::Posix::RegularFile opened = Quenlor::Posix::OpenFile(file);
    const std::string text = opened ? Quenlor::Posix::ReadAll(opened).value_or("") : "";
    return text.substr(0, std::min(text.find('\0'), text.find('\n')));
}

/// The name of the file that a process was started from; empty when the process is gone. The system hides the file of
/// another user's process; its command line and its short name are readable by all.
std::wstring ExecutableName(const fs::path& process)
{
    std::error_code error;
    const bool isHidden = fs::read_symlink(process / "exe", error).empty() && error == std::errc::permission_denied;
    std::string file = isHidden ? FirstWord(process / "cmdline") : Quenlor::Posix::ExecutablePath(process / "exe");
    if (isHidden && file.empty())
        file = FirstWord(process / "comm");
    return Quenlor::Posix::WideOf(file.substr(file.rfind('/') + 1)); // npos + 1 is 0
}

std::vector<Process> ReadProcesses()
{
    std::vector<Process> processes;
    std::error_code failure;
    for (fs::directory_iterator entry{"/proc", failure}; !failure && entry != fs::directory_iterator{};
         entry.increment(failure))
    {
        const std::string name = entry->path().filename().string();
        DWORD id = 0;
        if (std::from_chars(name.data(), name.data() + name.length(), id).ptr != name.data() + name.length())
            continue; // not a process
        if (std::wstring file = ExecutableName(entry->path()); !file.empty())
            processes.push_back({id, std::move(file)});
    }
    return processes;
}

/// Hands out the next process of the list.
BOOL Next(ProcessList* list, PROCESSENTRY32W* entry)
{
    if (!list || !entry || entry->dwSize < sizeof *entry || list->next == list->processes.size())
        return FALSE;
    const Process& process = list->processes[list->next++];
    entry->th32ProcessID = process.id;
    const std::size_t length = std::min(process.fileName.length(), std::size(entry->szExeFile) - 1);
    *std::copy_n(process.fileName.begin(), length, entry->szExeFile) = L'\0';
    return TRUE;
}
} // namespace

DWORD GetCurrentProcessId()
{
    return static_cast<DWORD>(::getpid());
}

HANDLE OpenProcess(DWORD, BOOL, DWORD process)
{
    return process == ::GetCurrentProcessId() ? ThisProcess() : nullptr;
}

BOOL CloseHandle(HANDLE handle)
{
    delete ListOf(handle);
    return handle && handle != INVALID_HANDLE_VALUE;
}

HANDLE CreateToolhelp32Snapshot(DWORD what, DWORD)
{
    return what == TH32CS_SNAPPROCESS ? new ProcessList{ReadProcesses()} : INVALID_HANDLE_VALUE;
}

BOOL Process32FirstW(HANDLE snapshot, PROCESSENTRY32W* entry)
{
    ProcessList* const list = ListOf(snapshot);
    if (list)
        list->next = 0;
    return Next(list, entry);
}

BOOL Process32NextW(HANDLE snapshot, PROCESSENTRY32W* entry)
{
    return Next(ListOf(snapshot), entry);
}
