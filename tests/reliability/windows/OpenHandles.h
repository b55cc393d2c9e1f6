#pragma once

#include <stdint.h>

#include <windows.h>

/// How many of the lowest handle numbers are in use, found by trying, since Wine 8 answers 0 to GetProcessHandleCount.
static inline int OpenHandles(void)
{
    int count = 0;
    DWORD flags = 0;
    for (intptr_t number = 4; number < 2048; number += 4)
        count += GetHandleInformation((HANDLE)number, &flags) != 0;
    return count;
}
