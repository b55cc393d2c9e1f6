#pragma once

#ifndef _WIN32
#include <cstdint>
#endif

// The Win32 types and constants that stand in public signatures. The types are spelled as the system's own headers
// spell them, so this header may stand before or after <windows.h>, which it does not need.

struct HKEY__;
using HKEY = HKEY__*;
struct HWND__;
using HWND = HWND__*;

#ifndef _WIN32 // On Windows <windows.h> has these, as macros.

inline const HKEY HKEY_CLASSES_ROOT = reinterpret_cast<HKEY>(std::uintptr_t{0x80000000});
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::uintptr_t{0x80000001});
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::uintptr_t{0x80000002});

#endif
