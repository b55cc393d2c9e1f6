#include <Platform/Win32.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <new>
#include <string>
#include <string_view>

#include "registry/Hives.h"
#include "registry/RegistryPath.h"
#include "registry/RegistryText.h"

using namespace Quenlor::StandIn::Registry;

namespace
{
constexpr std::string_view ClassesPath = R"(Software\Classes)";
constexpr REGSAM Delete = 0x10000;
constexpr REGSAM RightsToWrite = KEY_SET_VALUE | KEY_CREATE_SUB_KEY | Delete;

/// Ends a call with this code.
struct Refusal
{
    LSTATUS code;
};

void Require(LSTATUS code)
{
    if (code != ERROR_SUCCESS)
        throw Refusal{code};
}

/// What a call returns for the exception that ended it.
LSTATUS CodeOfException()
try
{
    throw;
}
catch (const Refusal& refusal)
{
    return refusal.code;
}
catch (const std::bad_alloc&)
{
    return ERROR_NOT_ENOUGH_MEMORY;
}

std::string_view Text(LPCSTR text) noexcept
{
    return text ? std::string_view{text} : std::string_view{};
}

/// The predefined key that a handle means; null for any other.
HKEY PredefinedKey(HKEY handle) noexcept
{
    const auto low = static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(handle)); // the rest does not matter
    const HKEY key = reinterpret_cast<HKEY>(std::intptr_t{low});
    return RootName(key).empty() ? nullptr : key;
}

struct OpenKey
{
    HKEY root = nullptr; ///< The predefined key that it is below.
    std::string path;    ///< In each hive that may have it.
    REGSAM access = KEY_ALL_ACCESS;
    bool isPredefined = false; ///< It is there even when no hive has it.
    bool isDeleted = false;    ///< It stays so, even if such a key is created again.
};

std::map<HKEY, OpenKey>& OpenKeys()
{
    static auto& keys = *new std::map<HKEY, OpenKey>; // never destroyed, like the hives
    return keys;
}

/// One call: it has the registry to itself, and one key to work on. Below HKEY_CLASSES_ROOT that key may be in the
/// user's hive, in the machine's or in both; each call decides which of them applies.
class Session final
{
public:
    /// Works on the key of a handle that must have the rights `needed`.
    Session(HKEY handle, REGSAM needed) : Session{handle}
    {
        if ((m_key.access & needed) != needed)
            throw Refusal{ERROR_ACCESS_DENIED};
        Refresh(m_key.isPredefined ? &Hive::Refresh : &Hive::RefreshOncePerTick);
    }

    /// Works on a key below that of a handle, which need not exist.
    Session(HKEY handle, std::string_view path) : Session{handle}
    {
        Refresh(&Hive::Refresh);
        if (m_key.isPredefined && m_key.root == HKEY_CLASSES_ROOT && path.starts_with('\\'))
            path.remove_prefix(1); // tolerated only there
        if (path.starts_with('\\'))
            throw Refusal{ERROR_BAD_PATHNAME};
        m_parentLength = m_key.path.size();
        AppendToPath(m_key.path, path);
    }

    /// The first hive that has the key; null when none has.
    Hive* HiveWithKey()
    {
        for (Hive& hive : m_hives.Of(m_key.root))
        {
            if (KeyIn(hive))
                return &hive;
        }
        return nullptr;
    }

    /// Where a write goes: to the hive that has the key, the user's first; a new key of HKEY_CLASSES_ROOT to the
    /// machine's.
    Hive& HiveToWrite()
    {
        Hive* const existing = HiveWithKey();
        return existing ? *existing : m_hives.Of(m_key.root).back();
    }

    const Key* KeyIn(Hive& hive) const { return hive.Find(m_key.path); }
    const std::string& Path() const noexcept { return m_key.path; }
    bool IsPredefined() const noexcept { return m_key.isPredefined; }
    /// Whether the key of the handle is still there: another process may have deleted it meanwhile.
    bool HasParent(const Key& hive) const
    {
        return m_key.isPredefined || m_key.root == HKEY_CLASSES_ROOT ||
               hive.Find(std::string_view{m_key.path}.substr(0, m_parentLength));
    }

    /// The value in the first hive that has one of that name, which becomes `home`; null when none has.
    const Value* FindValue(std::string_view name, Hive** home = nullptr) const
    {
        for (Hive& hive : m_hives.Of(m_key.root))
        {
            if (home)
                *home = &hive;
            const Key* const key = KeyIn(hive);
            if (const Value* const value = key ? key->FindValue(name) : nullptr)
                return value;
        }
        return nullptr;
    }

    /// Items of the key by their index: the user's first, then the machine's that do not repeat one.
    template<class Item>
    const Item* ItemAt(DWORD index, const std::map<std::string, Item, std::less<>>& (Key::*items)() const noexcept)
    {
        const Key* earlier = nullptr;
        for (Hive& hive : m_hives.Of(m_key.root))
        {
            const Key* const key = KeyIn(hive);
            if (!key)
                continue;
            for (const auto& [folded, item] : (key->*items)())
            {
                if ((!earlier || !(earlier->*items)().contains(folded)) && index-- == 0)
                    return &item;
            }
            earlier = key;
        }
        return nullptr;
    }

    LSTATUS Change(Hive& hive, const std::function<LSTATUS(Key&)>& edit)
    {
        Require(hive.Change(edit));
        for (auto& [handle, key] : OpenKeys())
        {
            if (key.root != HKEY_CLASSES_ROOT && &m_hives.Of(key.root).front() == &hive && !hive.Root().Find(key.path))
                key.isDeleted = true;
        }
        return ERROR_SUCCESS;
    }

    LSTATUS Open(REGSAM access, PHKEY result)
    {
        if ((access & RightsToWrite) != 0)
            Require(HiveToWrite().CheckWritable());
        // No handle is used twice, and the low half of none is that of a predefined key.
        static std::uintptr_t count = 0;
        const auto handle = reinterpret_cast<HKEY>(++count * 8 + 4);
        OpenKeys().emplace(handle, OpenKey{m_key.root, m_key.path, access});
        *result = handle;
        return ERROR_SUCCESS;
    }

private:
    explicit Session(HKEY handle)
    {
        if (const HKEY root = PredefinedKey(handle))
        {
            m_key.root = root;
            m_key.path = root == HKEY_CLASSES_ROOT ? ClassesPath : "";
            m_key.isPredefined = true;
            return;
        }
        const auto found = OpenKeys().find(handle);
        if (found == OpenKeys().end())
            throw Refusal{ERROR_INVALID_HANDLE};
        m_open = &found->second;
        m_key = found->second;
    }

    /// Sees to it that the key of the handle is there.
    void Refresh(LSTATUS (Hive::*refresh)())
    {
        if (m_key.isDeleted)
            throw Refusal{ERROR_KEY_DELETED};
        for (Hive& hive : m_hives.Of(m_key.root))
            Require((hive.*refresh)());
        if (m_key.isPredefined || HiveWithKey())
            return;
        m_open->isDeleted = true;
        throw Refusal{ERROR_KEY_DELETED};
    }

    Hives& m_hives = Hives::Instance();
    std::lock_guard<std::mutex> m_lock{m_hives.mutex};
    OpenKey m_key;             // what is worked on
    OpenKey* m_open = nullptr; // the handle; null for a predefined key
    std::size_t m_parentLength = 0;
};

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

/// `size` has the room for the name and its NUL, then the length without it.
LSTATUS GiveName(const std::string& stored, LPSTR name, LPDWORD size)
{
    if (stored.size() >= *size)
        return ERROR_MORE_DATA;
    std::memcpy(name, stored.c_str(), stored.size() + 1);
    *size = static_cast<DWORD>(stored.size());
    return ERROR_SUCCESS;
}
} // namespace

LSTATUS RegOpenKeyExA(HKEY root, LPCSTR subKey, DWORD, REGSAM access, PHKEY result)
try
{
    if (!result)
        return ERROR_INVALID_PARAMETER;
    if (!root)
        return ERROR_INVALID_HANDLE;
    *result = nullptr;
    if (Text(subKey).empty() && PredefinedKey(root))
    {
        *result = root;
        return ERROR_SUCCESS;
    }
    Session session{root, Text(subKey)};
    return session.HiveWithKey() ? session.Open(access, result) : ERROR_FILE_NOT_FOUND;
}
catch (...)
{
    return CodeOfException();
}

LSTATUS RegCreateKeyExA(HKEY root, LPCSTR subKey, DWORD reserved, LPSTR, DWORD, REGSAM access,
                        const SECURITY_ATTRIBUTES*, PHKEY result, LPDWORD disposition)
try
{
    if (reserved != 0)
        return ERROR_INVALID_PARAMETER;
    if (!result)
        return ERROR_BADKEY;
    if (!root)
        return ERROR_INVALID_HANDLE;
    *result = nullptr;
    Session session{root, Text(subKey)};
    bool isNew = !session.HiveWithKey();
    if (isNew)
    {
        if (!IsLegalKeyPath(session.Path()))
            return ERROR_INVALID_PARAMETER;
        const auto create = [&](Key& hive)
        {
            if (!session.HasParent(hive))
                return LSTATUS{ERROR_KEY_DELETED};
            isNew = !hive.Find(session.Path()); // another process may have created it meanwhile
            hive.Create(session.Path());
            return ERROR_SUCCESS;
        };
        session.Change(session.HiveToWrite(), create);
    }
    if (disposition)
        *disposition = isNew ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    return session.Open(access, result);
}
catch (...)
{
    return CodeOfException();
}

LSTATUS RegCloseKey(HKEY key)
{
    if (PredefinedKey(key))
        return ERROR_SUCCESS;
    const std::lock_guard lock{Hives::Instance().mutex};
    return OpenKeys().erase(key) != 0 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size)
try
{
    if ((data && !size) || reserved)
        return ERROR_INVALID_PARAMETER;
    const DWORD room = size ? *size : 0; // before `type` is set, which may be the same variable
    if (size && !data)
        *size = 0;
    Session session{key, KEY_QUERY_VALUE};
    const Value* const value = session.FindValue(Text(name));
    return value ? GiveData(*value, type, data, size, room) : ERROR_FILE_NOT_FOUND;
}
catch (...)
{
    return CodeOfException();
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD, DWORD type, const BYTE* data, DWORD size)
try
{
    if (!data && size != 0)
        return ERROR_NOACCESS;
    // As on Windows: a count that leaves out just the NUL takes it along.
    if (size != 0 && IsText(type) && data[size - 1] != 0 && data[size] == 0)
        ++size;
    const std::string_view stored{reinterpret_cast<const char*>(data), size};
    Session session{key, KEY_SET_VALUE};
    if (!IsLegalValueName(Text(name)))
        return ERROR_INVALID_PARAMETER;
    Hive& hive = session.HiveToWrite();
    const Key* const found = session.KeyIn(hive);
    const Value* const old = found ? found->FindValue(Text(name)) : nullptr;
    if (old && old->type == type && old->data == stored)
        return hive.Sync();
    const auto set = [&](Key& tree)
    {
        Key* const target = session.IsPredefined() ? &tree.Create(session.Path()) : tree.Find(session.Path());
        if (!target)
            return ERROR_KEY_DELETED;
        target->SetValue(Text(name), type, stored);
        return ERROR_SUCCESS;
    };
    return session.Change(hive, set);
}
catch (...)
{
    return CodeOfException();
}

LSTATUS RegDeleteValueA(HKEY key, LPCSTR name)
try
{
    Session session{key, KEY_SET_VALUE};
    Hive* hive = nullptr;
    if (!session.FindValue(Text(name), &hive))
        return ERROR_FILE_NOT_FOUND;
    const auto remove = [&](Key& tree)
    {
        Key* const target = tree.Find(session.Path());
        return target && target->DeleteValue(Text(name)) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    };
    return session.Change(*hive, remove);
}
catch (...)
{
    return CodeOfException();
}

LSTATUS RegDeleteTreeA(HKEY key, LPCSTR subKey)
try
{
    const bool isContent = Text(subKey).empty();
    constexpr REGSAM needed = KEY_SET_VALUE | KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS;
    Session session = isContent ? Session{key, needed} : Session{key, Text(subKey)};
    Hive* const hive = session.HiveWithKey();
    if (!hive)
        return isContent ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    const auto remove = [&](Key& tree)
    {
        Key* const target = tree.Find(session.Path());
        if (!target)
            return isContent ? ERROR_KEY_DELETED : ERROR_FILE_NOT_FOUND;
        if (isContent)
            target->Clear();
        else
            tree.Delete(session.Path());
        return ERROR_SUCCESS;
    };
    return session.Change(*hive, remove);
}
catch (...)
{
    return CodeOfException();
}

LSTATUS RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPSTR, LPDWORD, FILETIME*)
try
{
    if (!name || !nameSize || reserved)
        return ERROR_INVALID_PARAMETER;
    Session session{key, KEY_ENUMERATE_SUB_KEYS};
    const Key* const found = session.ItemAt(index, &Key::SubKeys);
    return found ? GiveName(found->Name(), name, nameSize) : ERROR_NO_MORE_ITEMS;
}
catch (...)
{
    return CodeOfException();
}

LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPDWORD type, LPBYTE data,
                      LPDWORD size)
try
{
    if (!name || !nameSize || reserved || (data && !size))
        return ERROR_INVALID_PARAMETER;
    Session session{key, KEY_QUERY_VALUE};
    const Value* const value = session.ItemAt(index, &Key::Values);
    if (!value)
        return ERROR_NO_MORE_ITEMS;
    const LSTATUS status = GiveData(*value, type, data, size, size ? *size : 0);
    return status == ERROR_SUCCESS ? GiveName(value->name, name, nameSize) : status; // no name without its data
}
catch (...)
{
    return CodeOfException();
}
