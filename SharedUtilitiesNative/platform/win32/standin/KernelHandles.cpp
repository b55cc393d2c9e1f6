#include "KernelHandles.h"

#include <unistd.h>

namespace
{
/// The only process that can be opened. One object, which is there as long as the process is, serves all handles of
/// it: callers may leave theirs open.
KernelObject* ThisProcess()
{
    static auto* const process = new KernelObject;
    return process;
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
    if (!handle || handle == INVALID_HANDLE_VALUE)
        return FALSE;
    if (handle != ThisProcess())
        delete static_cast<KernelObject*>(handle);
    return TRUE;
}
