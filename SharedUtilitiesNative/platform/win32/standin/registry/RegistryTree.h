#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <Platform/Win32.h>

namespace Quenlor::StandIn::Registry
{
/// A value as it was stored. `data` are its bytes; a terminating NUL of text is among them only if it was stored.
struct Value
{
    std::string name; ///< Empty for the default value of its key.
    DWORD type = REG_NONE;
    std::string data;

    std::string foldedName;  ///< The name in the form that is equal for all spellings.
    std::uint64_t order = 0; ///< Rises with the time of creation within a key.
};

/// A key with all that is below it. Names compare without regard to case and keep the case they were created in.
///
/// A path has one backslash or more between its levels and none at its start (see RegistryPath.h); the empty path is
/// the key itself. Names are not checked here. A key stays where it is in memory until it is deleted.
class Key final
{
public:
    Key() = default;
    Key(std::string_view name, std::string foldedName); ///< For Create alone.
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    Key(Key&&) noexcept = default;
    Key& operator=(Key&&) noexcept = default;
    ~Key() = default;

    const std::string& Name() const noexcept { return m_name; }

    Key* Find(std::string_view path);
    const Key* Find(std::string_view path) const; ///< Null when a level is missing.
    Key& Create(std::string_view path);           ///< Finds the key, or makes it with all missing levels.
    bool Delete(std::string_view path);           ///< With all below it. False when missing, and for the empty path.
    void Clear() noexcept;                        ///< Deletes all sub-keys and values.

    const Value* FindValue(std::string_view name) const;                     ///< Null when missing.
    void SetValue(std::string_view name, DWORD type, std::string_view data); ///< An existing value keeps its place.
    bool DeleteValue(std::string_view name);                                 ///< False when missing.

    /// Sorted by the folded names.
    const std::vector<std::unique_ptr<Key>>& SubKeys() const noexcept { return m_subKeys; }
    /// In the order of creation.
    const std::vector<std::unique_ptr<Value>>& Values() const noexcept { return m_values; }

private:
    /// Where a sub-key stands or would stand.
    std::size_t PositionOf(std::string_view foldedName) const noexcept;
    bool IsAt(std::size_t position, std::string_view foldedName) const noexcept;

    std::string m_name;
    std::string m_foldedName;
    std::vector<std::unique_ptr<Key>> m_subKeys;
    std::vector<std::unique_ptr<Value>> m_values;
    std::unordered_map<std::string_view, Value*> m_valueIndex; // its keys are views of the values' folded names
    std::uint64_t m_nextOrder = 0;
};
} // namespace Quenlor::StandIn::Registry
