#include "registry/RegistryKey.h"

#include <iterator>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
std::optional<std::string> Read(HKEY root, const Utf8String& subKey, const Utf8String& name, DWORD wantedType)
{
    const RegistryKey key = OpenForReading(root, subKey);
    if (!key)
        return {};
    std::string data;
    DWORD type = REG_NONE;
    DWORD size = 256; // enough for most
    LSTATUS status = ERROR_SUCCESS;
    do
    {
        data.resize(size);
        status =
            ::RegQueryValueExA(key.get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size);
    } while (status == ERROR_MORE_DATA && type == wantedType);
    if (status != ERROR_SUCCESS || type != wantedType)
        return {};
    data.resize(size);
    return data;
}

const char* NameOf(DWORD type)
{
    constexpr const char* names[] = {"REG_NONE",  "REG_SZ", "REG_EXPAND_SZ", "REG_BINARY",
                                     "REG_DWORD", "type 5", "REG_LINK",      "REG_MULTI_SZ",
                                     "type 8",    "type 9", "type 10",       "REG_QWORD"};
    return type < std::size(names) ? names[type] : "an unknown type";
}

/// Why a value that is there has no data of that type; empty when it is missing.
std::string ProblemOf(HKEY root, const Utf8String& subKey, const Utf8String& name, DWORD wantedType)
{
    HKEY opened = nullptr;
    LSTATUS status = ::RegOpenKeyExA(root, subKey.c_str(), 0, ReadAccess, &opened);
    const RegistryKey key{status == ERROR_SUCCESS ? opened : nullptr};
    DWORD type = REG_NONE;
    if (key)
        status = ::RegQueryValueExA(key.get(), name.c_str(), nullptr, &type, nullptr, nullptr);
    if (status == ERROR_FILE_NOT_FOUND)
        return {};
    if (status != ERROR_SUCCESS || type == wantedType)
        return Source::Unreadable;
    const char* const wanted = wantedType == REG_SZ      ? "text"
                               : wantedType == REG_DWORD ? "a number"
                                                         : NameOf(wantedType);
    return std::string{NameOf(type)} + ", " + wanted + " expected";
}
} // namespace

RegistryKey OpenForReading(HKEY root, const Utf8String& subKey)
{
    HKEY key = nullptr;
    const LSTATUS status = ::RegOpenKeyExA(root, subKey.c_str(), 0, ReadAccess, &key);
    return RegistryKey{status == ERROR_SUCCESS ? key : nullptr};
}

RegistryKey OpenForWriting(HKEY root, const Utf8String& subKey)
{
    HKEY key = nullptr;
    const LSTATUS status = ::RegCreateKeyExA(root, subKey.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, WriteAccess,
                                             nullptr, &key, nullptr);
    return RegistryKey{status == ERROR_SUCCESS ? key : nullptr};
}

std::optional<std::string> ReadData(HKEY root, const Utf8String& subKey, const Utf8String& name, DWORD wantedType)
{
    std::optional<std::string> data = Read(root, subKey, name, wantedType);
    NoteValue(root, subKey, name, wantedType, data);
    return data;
}

void NoteValue(HKEY root, const Utf8String& subKey, const Utf8String& name, DWORD wantedType,
               const std::optional<std::string>& held)
{
    if (trace)
        trace->push_back({Source::Kind::RegistryValue, PlaceOf(root, subKey, name), held, held.has_value(),
                          held ? std::string{} : ProblemOf(root, subKey, name, wantedType)});
}

std::string PlaceOf(HKEY root, const Utf8String& subKey)
{
    const char* const name = root == HKEY_CLASSES_ROOT   ? "HKEY_CLASSES_ROOT"
                             : root == HKEY_CURRENT_USER ? "HKEY_CURRENT_USER"
                                                         : "HKEY_LOCAL_MACHINE";
    return std::string{name} + '\\' + subKey.c_str();
}

std::string PlaceOf(HKEY root, const Utf8String& subKey, const Utf8String& name)
{
    return PlaceOf(root, subKey) + '\\' + (name.empty() ? "(default)" : name.c_str());
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
