#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include <Platform/Win32.h>

namespace Quenlor::StandIn::Registry
{
/// A value as it was stored. `data` are its bytes; a terminating NUL of text is among them only if it was stored.
struct Value
{
    std::string name; ///< Empty for the default value of its key.
    DWORD type = REG_NONE;
    std::string data;

    friend bool operator==(const Value&, const Value&) = default;
};

/// A key with all that is below it. Names compare without regard to case and keep the case they were created in.
///
/// A path has one backslash or more between its levels and none at its start (see RegistryPath.h); the empty path is
/// the key itself. Names are not checked here. A key stays where it is in memory until it is deleted.
class Key final
{
public:
    const std::string& Name() const noexcept { return m_name; }

    Key* Find(std::string_view path);
    const Key* Find(std::string_view path) const; ///< Null when a level is missing.
    Key& Create(std::string_view path);           ///< Finds the key, or makes it with all missing levels.
    bool Delete(std::string_view path);           ///< With all below it. False when missing, and for the empty path.
    void Clear() noexcept;                        ///< Deletes all sub-keys and values.

    const Value* FindValue(std::string_view name) const; ///< Null when missing.
    void SetValue(std::string_view name, DWORD type, std::string_view data);
    bool DeleteValue(std::string_view name); ///< False when missing.

    // By the folded names, in their order.
    const std::map<std::string, Key, std::less<>>& SubKeys() const noexcept { return m_subKeys; }
    const std::map<std::string, Value, std::less<>>& Values() const noexcept { return m_values; }

    friend bool operator==(const Key&, const Key&) = default;

private:
    std::string m_name;
    std::map<std::string, Key, std::less<>> m_subKeys;
    std::map<std::string, Value, std::less<>> m_values;
};
} // namespace Quenlor::StandIn::Registry
