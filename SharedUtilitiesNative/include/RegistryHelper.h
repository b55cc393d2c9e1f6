#pragma once

#include <Platform/Win32Types.h>
#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// Typed reading and writing of registry values.
///
/// A place is a root (HKEY_CURRENT_USER, ...) and the path of a key below it with backslashes between the levels; an
/// empty value name means the key's default value. Names and texts are passed on byte by byte. Always the 64-bit view.
///
/// The result of SetStringValue is the opposite of the other two setters':
/// ```cpp
/// if (RegistryHelper::SetStringValue(HKEY_CURRENT_USER, key, "Name", "text")) Report("not stored");
/// if (!RegistryHelper::SetIntValue(HKEY_CURRENT_USER, key, "Size", 4)) Report("not stored");
/// ```
///
/// Reading never fails: a key or value that is missing, may not be read, has another type or is too large gives the
/// caller's default. Writing creates the key and its missing parents. No handle stays open between calls.
///
/// Nothing here throws for an ordinary failure. Any thread may call; of two writers the last one wins.
class SHAREDUTILITIES_EXPORT RegistryHelper final
{
public:
    RegistryHelper() = delete;

    /// `Software\Quenlor Systems\FraxoPro\<release>`: the key below HKEY_CURRENT_USER for this release's settings of
    /// this user, without a trailing separator.
    static Utf8String GetCurrentUserKey();

    /// Whether the key is there and may be read.
    static bool CheckIfKeyExists(HKEY root, const Utf8String& subKey);

    /// Text (REG_SZ), up to its first NUL. A stored empty text is an answer, not a missing value.
    static Utf8String GetStringValue(HKEY root, const Utf8String& subKey, const Utf8String& name,
                                     const Utf8String& whenMissing);

    /// Like GetStringValue, only for expandable text (REG_EXPAND_SZ). References such as %WINDIR% are
    /// returned as they are stored: expanding them is up to the caller.
    static Utf8String GetExpandedStringValue(HKEY root, const Utf8String& subKey, const Utf8String& name,
                                             const Utf8String& whenMissing);

    /// Stores text as REG_SZ. On Linux a key or value name with a line break is refused: a registry file cannot hold
    /// one.
    /// @return TRUE WHEN THE WRITE FAILED; false on success, and when the key could not be created. The reverse of
    ///         SetBoolValue and SetIntValue: callers of every release test it that way.
    static bool SetStringValue(HKEY root, const Utf8String& subKey, const Utf8String& name, const Utf8String& value);

    /// Whether a number is not 0. Numeric text is converted as GetIntValue says.
    static bool GetBoolValue(HKEY root, const Utf8String& subKey, const Utf8String& name, bool whenMissing);

    /// Stores 1 or 0 as REG_DWORD.
    /// @return whether it was written
    static bool SetBoolValue(HKEY root, const Utf8String& subKey, const Utf8String& name, bool value);

    /// A number (REG_DWORD). A setting of an earlier release, stored as text that starts with a number, is rewritten
    /// as a number when it is first read; when it cannot be rewritten, the answer is `whenMissing`. That works only
    /// for data of at most 4 bytes (with a stored NUL: three digits); longer text gives `whenMissing` and stays.
    static int GetIntValue(HKEY root, const Utf8String& subKey, const Utf8String& name, int whenMissing);

    /// Stores the bits of `value` as REG_DWORD.
    /// @return whether it was written
    static bool SetIntValue(HKEY root, const Utf8String& subKey, const Utf8String& name, int value);
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
