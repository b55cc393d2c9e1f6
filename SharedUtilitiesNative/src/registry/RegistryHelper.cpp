#include "RegistryHelper.h"

#include <optional>
#include <string>

#include <Platform/Win32.h>

#include "core/NumberConversion.h"
#include "registry/ProductKeys.h"
#include "registry/RegistryKey.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
Utf8String ReadText(HKEY root, const Utf8String& subKey, const Utf8String& name, DWORD type,
                    const Utf8String& whenMissing)
{
    const std::optional<std::string> data = ReadData(root, subKey, name, type);
    return data ? Utf8String{data->c_str()} : whenMissing; // up to the first NUL
}

bool Write(HKEY root, const Utf8String& subKey, const Utf8String& name, int value)
{
    const RegistryKey key = OpenForWriting(root, subKey);
    return key && ::RegSetValueExA(key.get(), name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                                   sizeof value) == ERROR_SUCCESS;
}

/// A value of at most four bytes, which are a number only if that is its type.
struct StoredNumber
{
    DWORD type;
    int number;
};

std::optional<StoredNumber> ReadNumber(HKEY root, const Utf8String& subKey, const Utf8String& name)
{
    DWORD type = REG_NONE;
    DWORD data = 0;
    DWORD size = sizeof data;
    const RegistryKey key = OpenForReading(root, subKey); // closed before a conversion opens the same key for writing
    if (!key || ::RegQueryValueExA(key.get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(&data), &size) !=
                    ERROR_SUCCESS)
        return {};
    return StoredNumber{type, static_cast<int>(data)};
}

/// Turns a numeric text setting into a number in place; leaves any other value untouched.
int ConvertStringValueToInt(HKEY root, const Utf8String& subKey, const Utf8String& name, int whenMissing)
{
    const Attempt conversion;
    const Utf8String text = RegistryHelper::GetStringValue(root, subKey, name, {});
    const int number = LeadingNumber(text);
    if (number == 0 && text != "0")
    {
        conversion.PassOver();
        const std::optional<StoredNumber> now = ReadNumber(root, subKey, name);
        return now && now->type == REG_DWORD ? now->number : whenMissing; // another program has just converted it
    }
    return RegistryHelper::SetIntValue(root, subKey, name, number) ? number : whenMissing;
}
} // namespace

Utf8String RegistryHelper::GetCurrentUserKey()
{
    return UserKeyOf(VersionConfig::GetReleaseNumber());
}

bool RegistryHelper::CheckIfKeyExists(HKEY root, const Utf8String& subKey)
{
    const bool exists = OpenForReading(root, subKey) != nullptr;
    if (trace)
        trace->push_back({Source::Kind::RegistryKey, PlaceOf(root, subKey),
                          exists ? std::optional<std::string>{""} : std::nullopt, exists});
    return exists;
}

Utf8String RegistryHelper::GetStringValue(HKEY root, const Utf8String& subKey, const Utf8String& name,
                                          const Utf8String& whenMissing)
{
    return ReadText(root, subKey, name, REG_SZ, whenMissing);
}

Utf8String RegistryHelper::GetExpandedStringValue(HKEY root, const Utf8String& subKey, const Utf8String& name,
                                                  const Utf8String& whenMissing)
{
    return ReadText(root, subKey, name, REG_EXPAND_SZ, whenMissing);
}

bool RegistryHelper::SetStringValue(HKEY root, const Utf8String& subKey, const Utf8String& name,
                                    const Utf8String& value)
{
    const RegistryKey key = OpenForWriting(root, subKey);
    if (!key)
        return false;
    // The count leaves out the NUL after the text; the system finds one there and stores it anyway.
    const LSTATUS status =
        ::RegSetValueExA(key.get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                         static_cast<DWORD>(value.length()));
    return status != ERROR_SUCCESS; // true means failure: callers of every release test it that way
}

bool RegistryHelper::GetBoolValue(HKEY root, const Utf8String& subKey, const Utf8String& name, bool whenMissing)
{
    return GetIntValue(root, subKey, name, whenMissing ? 1 : 0) != 0;
}

bool RegistryHelper::SetBoolValue(HKEY root, const Utf8String& subKey, const Utf8String& name, bool value)
{
    return Write(root, subKey, name, value ? 1 : 0);
}

int RegistryHelper::GetIntValue(HKEY root, const Utf8String& subKey, const Utf8String& name, int whenMissing)
{
    const std::optional<StoredNumber> stored = ReadNumber(root, subKey, name);
    if (stored && stored->type != REG_DWORD)
        return ConvertStringValueToInt(root, subKey, name, whenMissing);
    if (trace)
        NoteValue(root, subKey, name, REG_DWORD, stored ? std::optional{std::to_string(stored->number)} : std::nullopt);
    return stored ? stored->number : whenMissing;
}

bool RegistryHelper::SetIntValue(HKEY root, const Utf8String& subKey, const Utf8String& name, int value)
{
    return Write(root, subKey, name, value);
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
