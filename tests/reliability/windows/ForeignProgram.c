#include <stdio.h>

#include <windows.h>

#include <tlhelp32.h>

#include "OpenHandles.h"

// A program that knows neither our headers nor our compiler: it loads the DLLs, calls functions by their exported names
// and unloads the DLLs, again and again. No thread may stay, and no handle except those of mingw-w64's own runtime.

enum
{
    Rounds = 20
};

typedef int (*Function)(const wchar_t* argument); // one that takes no argument ignores it in this calling convention

static const struct
{
    const char* dll;
    const char* function;
    int left; // Handles of each round, see docs/reliability.md: the runtime's record of a thread that locks a mutex.
} Calls[] = {
    {"Quenlor5.dll", "_ZN7Quenlor17QnStringUtilities4WtoiEPKw", 0},
    {"SharedUtilitiesNative.dll",
     "_ZN7Quenlor5Fraxo15SharedUtilities6Native18UserSettingsConfig16IsRssFeedEnabledEv", 0},
    {"SharedUtilitiesNative.dll", "_ZN7Quenlor5Fraxo15SharedUtilities6Native6Logger10InitializeEv", 2},
};

static int Threads(void)
{
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread = {.dwSize = sizeof thread};
    int count = 0;
    for (BOOL isThere = Thread32First(all, &thread); isThere; isThere = Thread32Next(all, &thread))
        count += thread.th32OwnerProcessID == GetCurrentProcessId();
    CloseHandle(all);
    return count;
}

/// @return what is wrong; null when nothing is
static const char* LoadCallAndUnload(const char* dll, const char* name)
{
    const HMODULE library = LoadLibraryA(dll);
    const Function function = library ? (Function)(INT_PTR)GetProcAddress(library, name) : NULL;
    if (!function)
        return library ? "has no such function" : "cannot be loaded";
    function(L"22");
    FreeLibrary(library);
    return GetModuleHandleA(dll) || GetModuleHandleA("Quenlor5.dll") ? "stays loaded" : NULL;
}

int main(void)
{
    int faults = 0;
    for (unsigned i = 0; i < sizeof Calls / sizeof *Calls; ++i)
    {
        const char* fault = NULL;
        int handles = 0, threads = 0;
        for (int round = 0; round < Rounds && !fault; ++round)
        {
            fault = LoadCallAndUnload(Calls[i].dll, Calls[i].function);
            if (round == 0) // which may load what stays, of the system's
            {
                handles = OpenHandles();
                threads = Threads();
            }
        }
        if (!fault && OpenHandles() > handles + (Rounds - 1) * Calls[i].left)
            fault = "leaves handles open";
        if (!fault && Threads() > threads)
            fault = "leaves threads running";
        printf("%s, %s: %s\n", Calls[i].dll, Calls[i].function, fault ? fault : "nothing stays");
        faults += fault != NULL;
    }
    return faults;
}
