#include <Platform/Win32.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <string_view>

#include "registry/RegistryPath.h"
#include "registry/RegistryState.h"
#include "registry/RegistryText.h"

using namespace Quenlor::StandIn::Registry;

namespace
{
constexpr std::string_view ClassesPath = R"(Software\Classes)";
constexpr REGSAM Delete = 0x10000;
constexpr REGSAM RightsToWrite = KEY_SET_VALUE | KEY_CREATE_SUB_KEY | Delete;

std::string_view Text(LPCSTR text) noexcept
{
    return text ? std::string_view{text} : std::string_view{};
}

/// Runs `action` while no other thread uses the registry.
template<typename Action>
LSTATUS Locked(Action action)
try
{
    RegistryState& state = RegistryState::Instance();
    const std::lock_guard lock{state.Mutex()};
    return action(state);
}
catch (const std::bad_alloc&)
{
    return ERROR_NOT_ENOUGH_MEMORY;
}

bool IsHandle(HKEY handle, HKEY predefined) noexcept
{
    const auto low = [](HKEY key) { return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(key)); };
    return low(handle) == low(predefined); // the rest may be there by sign extension or not
}

bool IsPredefined(HKEY handle) noexcept
{
    return IsHandle(handle, HKEY_CLASSES_ROOT) || IsHandle(handle, HKEY_CURRENT_USER) ||
           IsHandle(handle, HKEY_LOCAL_MACHINE);
}

void OpenRoot(RegistryState& state, HKEY handle, OpenKey& root)
{
    root.access = KEY_ALL_ACCESS;
    root.isRoot = true;
    if (IsHandle(handle, HKEY_LOCAL_MACHINE))
        root.places.Add({state.HiveOf(HKEY_LOCAL_MACHINE), {}});
    else if (IsHandle(handle, HKEY_CURRENT_USER))
        root.places.Add({state.HiveOf(HKEY_CURRENT_USER), {}});
    else
    {
        root.places.Add({state.HiveOf(HKEY_CURRENT_USER), ClassesPath});
        root.places.Add({state.HiveOf(HKEY_LOCAL_MACHINE), ClassesPath});
    }
}

/// The key of a handle; a predefined one is put into `root`. Null for what is no handle.
OpenKey* KeyOf(RegistryState& state, HKEY handle, OpenKey& root)
{
    if (!IsPredefined(handle))
        return state.Handles().Find(handle);
    OpenRoot(state, handle, root);
    return &root;
}

enum class Look
{
    AtTheFile,  ///< As each open does.
    IfAnnounced ///< As each later call on an open handle does.
};

/// Makes the hives of a key current. @return ERROR_KEY_DELETED when they have the key no more.
LSTATUS Refresh(OpenKey& key, Look look)
{
    if (key.isDeleted)
        return ERROR_KEY_DELETED;
    bool exists = key.isRoot;
    for (KeyPlace& place : key.places)
    {
        Hive& hive = place.InHive();
        const LSTATUS status = look == Look::AtTheFile ? hive.Refresh() : hive.RefreshIfAnnounced();
        if (status != ERROR_SUCCESS)
            return status;
        exists = exists || place.Find();
    }
    key.isDeleted = !exists;
    return exists ? ERROR_SUCCESS : ERROR_KEY_DELETED;
}

/// Runs `action` on the key of a handle that must have the rights `needed`.
template<typename Action>
LSTATUS WithKey(HKEY handle, REGSAM needed, Action action)
{
    return Locked(
        [&](RegistryState& state) -> LSTATUS
        {
        OpenKey root;
        OpenKey* const key = KeyOf(state, handle, root);
        if (!key)
            return ERROR_INVALID_HANDLE;
        if ((key->access & needed) != needed)
            return ERROR_ACCESS_DENIED;
        const LSTATUS status = Refresh(*key, key->isRoot ? Look::AtTheFile : Look::IfAnnounced);
        return status == ERROR_SUCCESS ? action(state, *key) : status;
        });
}

/// Runs `action` with the key of `subKey` below that of `handle`, of which it is not known whether it exists.
template<typename Action>
LSTATUS WithSubKey(HKEY handle, LPCSTR subKey, Action action)
{
    return Locked(
        [&](RegistryState& state) -> LSTATUS
        {
        OpenKey root;
        OpenKey* const parent = KeyOf(state, handle, root);
        if (!parent)
            return ERROR_INVALID_HANDLE;
        std::string_view path = Text(subKey);
        if (IsHandle(handle, HKEY_CLASSES_ROOT) && path.starts_with('\\'))
            path.remove_prefix(1); // tolerated there alone
        const LSTATUS status = Refresh(*parent, Look::AtTheFile);
        if (status != ERROR_SUCCESS)
            return status;
        if (path.starts_with('\\'))
            return ERROR_BAD_PATHNAME;
        OpenKey key;
        key.places = parent->places.Below(path);
        return action(state, key, *parent);
        });
}

/// The first place that has the key; null when none has.
KeyPlace* ExistingPlace(OpenKey& key)
{
    auto* const found =
        std::find_if(key.places.begin(), key.places.end(), [](KeyPlace& place) { return place.Find(); });
    return found == key.places.end() ? nullptr : found;
}

/// Where a write goes: to the place that has the key, the user's first; a new key of HKEY_CLASSES_ROOT to the
/// machine's.
KeyPlace& PlaceToWrite(OpenKey& key)
{
    KeyPlace* const existing = ExistingPlace(key);
    return existing ? *existing : key.places.Last();
}

LSTATUS AddHandle(RegistryState& state, OpenKey& key, REGSAM access, PHKEY result)
{
    const LSTATUS status = (access & RightsToWrite) != 0 ? PlaceToWrite(key).InHive().CheckWritable() : ERROR_SUCCESS;
    if (status != ERROR_SUCCESS)
        return status;
    key.access = access;
    *result = state.Handles().Add(std::move(key));
    return ERROR_SUCCESS;
}

/// The item at `index` of a key, null behind the last: the user's items first, then the machine's that repeat none.
template<typename Item, typename ItemsOf, typename Has>
const Item* ItemAt(OpenKey& key, std::size_t index, ItemsOf itemsOf, Has has)
{
    const Key* first = nullptr;
    for (KeyPlace& place : key.places)
    {
        const Key* const found = place.Find();
        if (!found)
            continue;
        const auto& items = itemsOf(*found);
        if (!first)
        {
            if (index < items.size())
                return items[index].get();
            index -= items.size();
            first = found;
            continue;
        }
        for (const auto& item : items)
        {
            if (!has(*first, *item) && index-- == 0)
                return item.get();
        }
    }
    return nullptr;
}

const Value* FindValue(OpenKey& key, std::string_view name)
{
    for (KeyPlace& place : key.places)
    {
        const Key* const found = place.Find();
        if (const Value* const value = found ? found->FindValue(name) : nullptr)
            return value;
    }
    return nullptr;
}

/// Hands a value's data to the caller, whose buffer has `room` bytes; `type` and `size` may name the same variable.
LSTATUS GiveData(const Value& value, LPDWORD type, LPBYTE data, LPDWORD size, DWORD room)
{
    const auto length = static_cast<DWORD>(value.data.size());
    if (type)
        *type = value.type;
    if (size)
        *size = length;
    if (!data || length == 0)
        return ERROR_SUCCESS;
    if (length > room)
        return ERROR_MORE_DATA;
    std::memcpy(data, value.data.data(), length);
    if (IsText(value.type) && value.data.back() != '\0' && length < room)
        data[length] = 0; // not counted
    return ERROR_SUCCESS;
}

/// Hands a name to the caller, whose buffer has `size` characters. @return false when it does not fit.
bool GiveName(std::string_view name, LPSTR buffer, LPDWORD size)
{
    if (name.size() >= *size)
        return false;
    std::memcpy(buffer, name.data(), name.size());
    buffer[name.size()] = '\0';
    *size = static_cast<DWORD>(name.size());
    return true;
}
} // namespace

LSTATUS RegOpenKeyExA(HKEY root, LPCSTR subKey, DWORD, REGSAM access, PHKEY result)
{
    if (!result)
        return ERROR_INVALID_PARAMETER;
    if (!root)
        return ERROR_INVALID_HANDLE;
    *result = nullptr;
    if (Text(subKey).empty() && IsPredefined(root))
    {
        *result = root;
        return ERROR_SUCCESS;
    }
    return WithSubKey(root, subKey,
                      [&](RegistryState& state, OpenKey& key, const OpenKey&)
                      { return ExistingPlace(key) ? AddHandle(state, key, access, result) : ERROR_FILE_NOT_FOUND; });
}

LSTATUS RegCreateKeyExA(HKEY root, LPCSTR subKey, DWORD reserved, LPSTR, DWORD, REGSAM access,
                        const SECURITY_ATTRIBUTES*, PHKEY result, LPDWORD disposition)
{
    if (reserved != 0)
        return ERROR_INVALID_PARAMETER;
    if (!result)
        return ERROR_BADKEY;
    if (!root)
        return ERROR_INVALID_HANDLE;
    *result = nullptr;
    return WithSubKey(root, subKey,
                      [&](RegistryState& state, OpenKey& key, const OpenKey& parent) -> LSTATUS
                      {
        bool isNew = !ExistingPlace(key);
        if (isNew)
        {
            KeyPlace& place = PlaceToWrite(key);
            if (!IsLegalKeyPath(place.Path()))
                return ERROR_INVALID_PARAMETER;
            const LSTATUS status = state.Change(place.InHive(),
                                                [&](Key& hive)
                                                {
                if (!parent.isRoot && !parent.places.AreTwo() && !hive.Find(parent.places.First().Path()))
                    return ERROR_KEY_DELETED;
                isNew = !hive.Find(place.Path());
                hive.Create(place.Path());
                return ERROR_SUCCESS;
            });
            if (status != ERROR_SUCCESS)
                return status;
        }
        if (disposition)
            *disposition = isNew ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
        return AddHandle(state, key, access, result);
    });
}

LSTATUS RegCloseKey(HKEY key)
{
    if (IsPredefined(key))
        return ERROR_SUCCESS;
    return Locked([&](RegistryState& state)
                  { return state.Handles().Close(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE; });
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size)
{
    if ((data && !size) || reserved)
        return ERROR_INVALID_PARAMETER;
    const DWORD room = size ? *size : 0; // before `type` is set, which may be the same variable
    if (size && !data)
        *size = 0;
    return WithKey(key, KEY_QUERY_VALUE,
                   [&](RegistryState&, OpenKey& open)
                   {
        const Value* const value = FindValue(open, Text(name));
        return value ? GiveData(*value, type, data, size, room) : ERROR_FILE_NOT_FOUND;
    });
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD, DWORD type, const BYTE* data, DWORD size)
{
    if (!data && size != 0)
        return ERROR_NOACCESS;
    // As on Windows: a count that leaves out just the NUL takes it along.
    if (size != 0 && IsText(type) && data[size - 1] != 0 && data[size] == 0)
        ++size;
    const std::string_view stored{reinterpret_cast<const char*>(data), size};
    return WithKey(key, KEY_SET_VALUE,
                   [&](RegistryState& state, OpenKey& open) -> LSTATUS
                   {
        if (!IsLegalValueName(Text(name)))
            return ERROR_INVALID_PARAMETER;
        KeyPlace& place = PlaceToWrite(open);
        const Key* const found = place.Find();
        const Value* const old = found ? found->FindValue(Text(name)) : nullptr;
        if (old && old->type == type && old->data == stored)
            return ERROR_SUCCESS;
        return state.Change(place.InHive(),
                            [&](Key& hive)
                            {
            Key* const target = open.isRoot ? &hive.Create(place.Path()) : hive.Find(place.Path());
            if (!target)
                return ERROR_KEY_DELETED;
            target->SetValue(Text(name), type, stored);
            return ERROR_SUCCESS;
        });
    });
}

LSTATUS RegDeleteValueA(HKEY key, LPCSTR name)
{
    return WithKey(key, KEY_SET_VALUE,
                   [&](RegistryState& state, OpenKey& open) -> LSTATUS
                   {
        for (KeyPlace& place : open.places)
        {
            const Key* const found = place.Find();
            if (!found || !found->FindValue(Text(name)))
                continue;
            return state.Change(place.InHive(),
                                [&](Key& hive)
                                {
                Key* const target = hive.Find(place.Path());
                return target && target->DeleteValue(Text(name)) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
            });
        }
        return ERROR_FILE_NOT_FOUND;
    });
}

LSTATUS RegDeleteTreeA(HKEY key, LPCSTR subKey)
{
    if (Text(subKey).empty())
    {
        return WithKey(key, KEY_SET_VALUE | KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS,
                       [&](RegistryState& state, OpenKey& open) -> LSTATUS
                       {
            KeyPlace* const place = ExistingPlace(open);
            if (!place)
                return ERROR_SUCCESS;
            return state.Change(place->InHive(),
                                [&](Key& hive)
                                {
                Key* const target = hive.Find(place->Path());
                if (target)
                    target->Clear();
                return target ? ERROR_SUCCESS : ERROR_KEY_DELETED;
            });
        });
    }
    return WithSubKey(key, subKey,
                      [&](RegistryState& state, OpenKey& open, const OpenKey&) -> LSTATUS
                      {
        KeyPlace* const place = ExistingPlace(open);
        if (!place)
            return ERROR_FILE_NOT_FOUND;
        return state.Change(place->InHive(), [&](Key& hive)
                            { return hive.Delete(place->Path()) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND; });
    });
}

LSTATUS RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPSTR className,
                      LPDWORD classSize, FILETIME* lastWrite)
{
    if (!name || !nameSize || reserved)
        return ERROR_INVALID_PARAMETER;
    return WithKey(key, KEY_ENUMERATE_SUB_KEYS,
                   [&](RegistryState&, OpenKey& open) -> LSTATUS
                   {
        const auto* const found = ItemAt<Key>(
            open, index, [](const Key& parent) -> auto& { return parent.SubKeys(); },
            [](const Key& parent, const Key& item) { return parent.Find(item.Name()) != nullptr; });
        if (!found)
            return ERROR_NO_MORE_ITEMS;
        if (!GiveName(found->Name(), name, nameSize))
            return ERROR_MORE_DATA;
        if (className && classSize && *classSize != 0)
            *className = '\0';
        if (classSize)
            *classSize = 0;
        if (lastWrite)
            *lastWrite = {}; // a registry file has no times
        return ERROR_SUCCESS;
    });
}

LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPDWORD type, LPBYTE data,
                      LPDWORD size)
{
    if (!name || !nameSize || reserved || (data && !size))
        return ERROR_INVALID_PARAMETER;
    return WithKey(key, KEY_QUERY_VALUE,
                   [&](RegistryState&, OpenKey& open) -> LSTATUS
                   {
        const auto* const value = ItemAt<Value>(
            open, index, [](const Key& parent) -> auto& { return parent.Values(); },
            [](const Key& parent, const Value& item) { return parent.FindValue(item.name) != nullptr; });
        if (!value)
            return ERROR_NO_MORE_ITEMS;
        const DWORD room = size ? *size : 0;
        // The name is not given when the data do not fit.
        const LSTATUS status = GiveData(*value, type, data, size, room);
        if (status != ERROR_SUCCESS)
            return status;
        return GiveName(value->name, name, nameSize) ? ERROR_SUCCESS : ERROR_MORE_DATA;
    });
}
