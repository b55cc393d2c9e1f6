#include <Platform/Win32.h>

// Wine appends in two steps: it asks for the size of the file and writes there. Two programs that log at the same
// moment then overwrite each other's record (docs/reliability.md shows this without the library). In LoggerProgram,
// Wine's WriteFile is called by one program at a time, so that everything else can be tested under Wine.

namespace
{
BOOL WINAPI WriteInOneStep(HANDLE file, LPCVOID data, DWORD size, LPDWORD written, LPOVERLAPPED overlapped)
{
    static const auto write = reinterpret_cast<decltype(&::WriteFile)>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("kernel32.dll"), "WriteFile")));
    static const bool isWine = ::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "wine_get_version");
    static const HANDLE mutex = isWine ? ::CreateMutexA(nullptr, FALSE, "LoggerProgram appends") : nullptr;
    ::WaitForSingleObject(mutex, INFINITE);
    const BOOL isWritten = write(file, data, size, written, overlapped);
    ::ReleaseMutex(mutex);
    return isWritten;
}
} // namespace

/// What calls of WriteFile go through in this program: the linker takes it instead of that of kernel32.
extern "C"
{
    decltype(&::WriteFile) __imp_WriteFile = WriteInOneStep;
}
