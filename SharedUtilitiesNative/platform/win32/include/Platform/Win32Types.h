#pragma once

#include <cstdint>

// The Win32 types and constants of public signatures. The types are spelled as the system's own headers spell them, so
// this header may be included before or after <windows.h> and <shellscalingapi.h>, which it does not need.

struct HKEY__;
using HKEY = HKEY__*;
struct HWND__;
using HWND = HWND__*;

#ifndef DPI_ENUMS_DECLARED // As in <shellscalingapi.h>, which declares the same two.
#define DPI_ENUMS_DECLARED
enum PROCESS_DPI_AWARENESS
{
    PROCESS_DPI_UNAWARE = 0,
    PROCESS_SYSTEM_DPI_AWARE = 1,
    PROCESS_PER_MONITOR_DPI_AWARE = 2
};
enum MONITOR_DPI_TYPE
{
    MDT_EFFECTIVE_DPI = 0,
    MDT_ANGULAR_DPI = 1,
    MDT_RAW_DPI = 2,
    MDT_DEFAULT = MDT_EFFECTIVE_DPI
};
#endif

#ifndef HKEY_CURRENT_USER // <windows.h> has them as macros of the same values, before this header or after it.

inline const HKEY HKEY_CLASSES_ROOT = reinterpret_cast<HKEY>(std::intptr_t{INT32_MIN});
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::intptr_t{INT32_MIN} + 1);
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::intptr_t{INT32_MIN} + 2);

#endif
