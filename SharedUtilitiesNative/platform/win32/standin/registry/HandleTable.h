#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Platform/Win32.h>

#include "registry/Hive.h"

namespace Quenlor::StandIn::Registry
{
/// The path of a key in one hive.
class KeyPlace final
{
public:
    KeyPlace() = default;
    KeyPlace(std::shared_ptr<Hive> hive, std::string_view path) : m_hive{std::move(hive)}, m_path{path} {}

    Hive& InHive() const noexcept { return *m_hive; }
    const std::string& Path() const noexcept { return m_path; }
    KeyPlace Below(std::string_view path) const;

    /// The key in the state that the hive has now, good until that changes; null when it is missing.
    const Key* Find();

private:
    std::shared_ptr<Hive> m_hive;
    std::string m_path;
    const Key* m_found = nullptr;
    std::uint64_t m_generation = 0; // of the hive when m_found was looked up
};

/// Where a key is: in one place or, below HKEY_CLASSES_ROOT, in two, the user's first. Which of those counts is decided
/// per call.
class KeyPlaces final
{
public:
    void Add(KeyPlace place) { m_places.at(m_count++) = std::move(place); }
    bool AreTwo() const noexcept { return m_count == 2; }
    KeyPlaces Below(std::string_view path) const;

    KeyPlace* begin() noexcept { return m_places.data(); }
    KeyPlace* end() noexcept { return m_places.data() + m_count; }
    KeyPlace& First() noexcept { return m_places.front(); }
    const KeyPlace& First() const noexcept { return m_places.front(); }
    KeyPlace& Last() noexcept { return m_places[m_count - 1]; }

private:
    std::array<KeyPlace, 2> m_places; // and no vector: every call that opens a key makes one
    std::size_t m_count = 0;
};

struct OpenKey
{
    KeyPlaces places;
    REGSAM access = 0;
    bool isRoot = false; ///< A predefined key: it is there even when no hive has it.
    bool isDeleted = false;
};

/// The open keys by their handles. Not thread-safe.
class HandleTable final
{
public:
    HKEY Add(OpenKey key);
    OpenKey* Find(HKEY handle) noexcept; ///< Null for what is no open handle; good until it is closed.
    bool Close(HKEY handle) noexcept;    ///< False for what is no open handle.

    /// Marks the handles of keys that the hive has no more: they stay dead even if such a key is created again.
    void MarkDeleted(const Hive& hive);

private:
    struct Slot
    {
        std::optional<OpenKey> key;
        std::uint32_t uses = 0; // part of the handle, so that a closed one is not taken for its successor
    };

    Slot* SlotOf(HKEY handle) noexcept;

    std::deque<Slot> m_slots; // its elements stay where they are
    std::vector<std::size_t> m_free;
};
} // namespace Quenlor::StandIn::Registry
