#pragma once

#include <memory>
#include <optional>
#include <string>

#include <Platform/Win32.h>
#include <Quenlor/Utf8String.h>

#include "core/Trace.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
struct RegistryKeyCloser
{
    using pointer = HKEY;
    void operator()(HKEY key) const noexcept { ::RegCloseKey(key); }
};

/// An open registry key, closed at the end of its scope. Null when it could not be opened.
using RegistryKey = std::unique_ptr<HKEY, RegistryKeyCloser>;

// Always the 64-bit view: 32-bit and 64-bit applications of the family share these settings.
inline constexpr REGSAM ReadAccess = KEY_READ | KEY_WOW64_64KEY;
inline constexpr REGSAM WriteAccess = KEY_WRITE | KEY_WOW64_64KEY;

[[nodiscard]] RegistryKey OpenForReading(HKEY root, const Utf8String& subKey);

/// Creates the key and its missing parents.
[[nodiscard]] RegistryKey OpenForWriting(HKEY root, const Utf8String& subKey);

/// The bytes of a value, the NULs of text included if they are stored; nothing when it is missing or of another type.
[[nodiscard]] std::optional<std::string> ReadData(HKEY root, const Utf8String& subKey, const Utf8String& name,
                                                  DWORD wantedType);

/// The place as it is usually written, with the root's name; without the last argument the key itself.
std::string PlaceOf(HKEY root, const Utf8String& subKey);
std::string PlaceOf(HKEY root, const Utf8String& subKey, const Utf8String& name);

/// @param held what the value was; nothing when it is missing, cannot be read or has another type, which is said then
void NoteValue(HKEY root, const Utf8String& subKey, const Utf8String& name, DWORD wantedType,
               const std::optional<std::string>& held);
} // namespace Quenlor::Fraxo::SharedUtilities::Native
