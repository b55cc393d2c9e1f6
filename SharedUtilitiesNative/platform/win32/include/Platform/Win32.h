#pragma once

// The only way to the Win32 functions. Windows has them itself; elsewhere the stand-in implements the functions
// declared here, under their own names, with the results that Windows documents.

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <shellscalingapi.h>
#include <shlobj.h>
#include <stdlib.h>
#include <tlhelp32.h>

#include <Platform/Win32Types.h>

#else

#include <cstddef>
#include <cstdint>

#include <Platform/Win32Types.h>

using BYTE = std::uint8_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using BOOL = int;
using LSTATUS = std::int32_t;
using REGSAM = DWORD;
using LPCSTR = const char*;
using LPSTR = char*;
using LPCWSTR = const wchar_t*;
using LPWSTR = wchar_t*;
using LPVOID = void*;
using LPCVOID = const void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using LPBOOL = BOOL*;
using PHKEY = HKEY*;
using HRESULT = std::int32_t;
using LANGID = std::uint16_t;
using HANDLE = void*;
using errno_t = int;
struct SECURITY_ATTRIBUTES;
struct FILETIME;

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;

// ---- error codes ---------------------------------------------------------------------------------------------------

inline constexpr LSTATUS ERROR_SUCCESS = 0;
inline constexpr LSTATUS ERROR_FILE_NOT_FOUND = 2;
inline constexpr LSTATUS ERROR_ACCESS_DENIED = 5;
inline constexpr LSTATUS ERROR_INVALID_HANDLE = 6;
inline constexpr LSTATUS ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr LSTATUS ERROR_INVALID_PARAMETER = 87;
inline constexpr LSTATUS ERROR_BAD_PATHNAME = 161;
inline constexpr LSTATUS ERROR_MORE_DATA = 234;
inline constexpr LSTATUS ERROR_NO_MORE_ITEMS = 259;
inline constexpr LSTATUS ERROR_NOACCESS = 998;
inline constexpr LSTATUS ERROR_BADDB = 1009;
inline constexpr LSTATUS ERROR_BADKEY = 1010;
inline constexpr LSTATUS ERROR_REGISTRY_IO_FAILED = 1016;
inline constexpr LSTATUS ERROR_KEY_DELETED = 1018;

// ---- registry ------------------------------------------------------------------------------------------------------

inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_MULTI_SZ = 7;
inline constexpr DWORD REG_QWORD = 11;

inline constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
inline constexpr REGSAM KEY_SET_VALUE = 0x0002;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
inline constexpr REGSAM KEY_WOW64_64KEY = 0x0100;
inline constexpr REGSAM KEY_WOW64_32KEY = 0x0200;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

// The registry functions work on hives kept in text files; docs/linux-stand-in.md lists the differences from Windows.
// Each returns 0 or one of the codes above and does not set the thread's last error. Listing gives neither classes nor
// times.

LSTATUS RegOpenKeyExA(HKEY root, LPCSTR subKey, DWORD options, REGSAM access, PHKEY result);
LSTATUS RegCreateKeyExA(HKEY root, LPCSTR subKey, DWORD reserved, LPSTR className, DWORD options, REGSAM access,
                        const SECURITY_ATTRIBUTES* security, PHKEY result, LPDWORD disposition);
LSTATUS RegCloseKey(HKEY key);
LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size);
LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
LSTATUS RegDeleteValueA(HKEY key, LPCSTR name);
LSTATUS RegDeleteTreeA(HKEY key, LPCSTR subKey);
LSTATUS RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPSTR className,
                      LPDWORD classSize, FILETIME* lastWrite);
LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPDWORD type, LPBYTE data,
                      LPDWORD size);

// ---- handles -------------------------------------------------------------------------------------------------------

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(std::intptr_t{-1});
inline constexpr DWORD PROCESS_ALL_ACCESS = 0x1FFFFF;

DWORD GetCurrentProcessId();
HANDLE OpenProcess(DWORD access, BOOL isInherited, DWORD process); ///< Null for every process but this one.
BOOL CloseHandle(HANDLE handle);                                   ///< A handle of any kind.

// ---- shell folders --------------------------------------------------------------------------------------------------

inline constexpr std::size_t MAX_PATH = 260;
inline constexpr int CSIDL_LOCAL_APPDATA = 28;
inline constexpr int CSIDL_COMMON_APPDATA = 35;
inline constexpr int CSIDL_FLAG_CREATE = 0x8000;
inline constexpr DWORD SHGFP_TYPE_CURRENT = 0;

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);
inline constexpr HRESULT E_ACCESSDENIED = static_cast<HRESULT>(0x80070005);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057);

constexpr bool FAILED(HRESULT result) noexcept
{
    return result < 0;
}

// Knows these two folders, with CSIDL_FLAG_CREATE or without. Fails and leaves `path` empty for a folder that is
// relative or missing, for a path that does not fit MAX_PATH, and for a name with a backslash.

HRESULT SHGetFolderPathA(HWND owner, int folder, HANDLE token, DWORD flags, LPSTR path);

// ---- private profiles ----------------------------------------------------------------------------------------------

// Names compare without regard to case. Blanks around names and values are removed, then one pair of quotes around a
// value. Of several sections or keys of one name the first is used. A line that starts with `;` is a comment. The
// result is the length without the NUL, one less than `size` for a value that was cut. Differences from Windows: bytes
// are not decoded, so a UTF-16 file has no values, and a null section or name gives nothing instead of a list.

DWORD GetPrivateProfileStringA(LPCSTR section, LPCSTR name, LPCSTR whenMissing, LPSTR buffer, DWORD size, LPCSTR path);

// ---- code pages ----------------------------------------------------------------------------------------------------

inline constexpr UINT CP_ACP = 0; ///< 1252, or the number in $QUENLOR_ANSI_CODE_PAGE if the system knows that one.
inline constexpr UINT CP_UTF8 = 65001;
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x400;

// Only measures: returns how many bytes the text takes, its terminating NUL included. A caller that passes a length, a
// buffer or a substitute gets 0; the library never does. A character that the code page cannot represent counts as one
// `?` for each UTF-16 unit that it has on Windows; in UTF-8, which has no flags, malformed text becomes U+FFFD.
// Different from Windows: always as with WC_NO_BEST_FIT_CHARS, and what docs/linux-stand-in.md says of some code pages.

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int count, LPSTR buffer, int size, LPCSTR substitute,
                        LPBOOL isSubstituteUsed);

// ---- long and short paths ------------------------------------------------------------------------------------------

// The path with each component in the letter case that it has on disk; the separators stay. The short form is the long
// one, as on a volume without short names. Both return the length without the NUL; 0 when the file does not exist; when
// the buffer is too small, the size needed with the NUL, and they leave it as it is.

DWORD GetLongPathNameW(LPCWSTR path, LPWSTR buffer, DWORD size);
DWORD GetShortPathNameW(LPCWSTR path, LPWSTR buffer, DWORD size);

// ---- languages -----------------------------------------------------------------------------------------------------

LANGID GetUserDefaultUILanguage(); ///< From $LC_ALL, else $LC_MESSAGES, else $LANG; US English for an unknown one.

// ---- version resources ---------------------------------------------------------------------------------------------

struct VS_FIXEDFILEINFO
{
    DWORD dwSignature; ///< 0xFEEF04BD
    DWORD dwStrucVersion;
    DWORD dwFileVersionMS;
    DWORD dwFileVersionLS;
    DWORD dwProductVersionMS;
    DWORD dwProductVersionLS;
    DWORD dwFileFlagsMask;
    DWORD dwFileFlags;
    DWORD dwFileOS;
    DWORD dwFileType;
    DWORD dwFileSubtype;
    DWORD dwFileDateMS;
    DWORD dwFileDateLS;
};

// The version resource of an executable is the ELF note that the build puts into it; it holds only the fixed block. The
// path may be spelled like any of the library's paths.

DWORD GetFileVersionInfoSizeA(LPCSTR path, LPDWORD unused); ///< 0 when the file cannot be read or has no version.
BOOL GetFileVersionInfoA(LPCSTR path, DWORD unused, DWORD size, LPVOID block);
BOOL VerQueryValueA(LPCVOID block, LPCSTR subBlock, LPVOID* value, UINT* size); ///< Only for the root block "\".

// ---- processes -----------------------------------------------------------------------------------------------------

inline constexpr DWORD TH32CS_SNAPPROCESS = 2;

struct PROCESSENTRY32W // the members that are filled
{
    DWORD dwSize;
    DWORD th32ProcessID;
    wchar_t szExeFile[MAX_PATH]; ///< The name of the executable's file, without its folder.
};

// A snapshot lists the running processes; those of other users by their command line, as docs/linux-stand-in.md says.
// Snapshots of anything else cannot be taken. CloseHandle ends one.

HANDLE CreateToolhelp32Snapshot(DWORD what, DWORD process);
BOOL Process32FirstW(HANDLE snapshot, PROCESSENTRY32W* entry);
BOOL Process32NextW(HANDLE snapshot, PROCESSENTRY32W* entry);

// ---- display -------------------------------------------------------------------------------------------------------

struct HDC__;
using HDC = HDC__*;
struct HMONITOR__;
using HMONITOR = HMONITOR__*;

inline constexpr DWORD MONITOR_DEFAULTTONEAREST = 2;
inline constexpr int LOGPIXELSX = 88;

// There is a screen of 96 dots per inch, but neither a window nor a monitor. The awareness can be set once. Every
// process handle means the calling one.

HRESULT SetProcessDpiAwareness(PROCESS_DPI_AWARENESS awareness);
HRESULT GetProcessDpiAwareness(HANDLE process, PROCESS_DPI_AWARENESS* awareness);
HMONITOR MonitorFromWindow(HWND window, DWORD flags);                                      ///< Always null.
HRESULT GetDpiForMonitor(HMONITOR monitor, MONITOR_DPI_TYPE type, UINT* dpiX, UINT* dpiY); ///< Always a failure.
HDC GetDC(HWND window);                                                                    ///< Only of the screen.
int ReleaseDC(HWND window, HDC context);
int GetDeviceCaps(HDC context, int index); ///< Only LOGPIXELSX.

// ---- C runtime -----------------------------------------------------------------------------------------------------

/// In a program that runs with more rights than its caller, no variable is set: they are the caller's.
errno_t getenv_s(std::size_t* required, char* buffer, std::size_t size, const char* name);
errno_t _putenv_s(const char* name, const char* value); ///< An empty value removes the variable.

#endif
