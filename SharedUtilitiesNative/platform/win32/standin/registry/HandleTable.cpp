#include "registry/HandleTable.h"

#include <utility>

#include "registry/RegistryPath.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
// A handle is the number of uses of its slot and, below, four times the slot's number counted from 1. So the low 32
// bits never are those of a predefined key, which have the highest one set.
static_assert(sizeof(std::uintptr_t) == sizeof(std::uint64_t));

HKEY MakeHandle(std::size_t slot, std::uint32_t uses) noexcept
{
    return reinterpret_cast<HKEY>(static_cast<std::uintptr_t>(uses) << 32 | (slot + 1) * 4);
}
} // namespace

KeyPlace KeyPlace::Below(std::string_view path) const
{
    KeyPlace place{m_hive, {}};
    place.m_path.reserve(m_path.size() + 1 + path.size());
    place.m_path = m_path;
    AppendToPath(place.m_path, path);
    return place;
}

KeyPlaces KeyPlaces::Below(std::string_view path) const
{
    KeyPlaces below;
    for (std::size_t i = 0; i < m_count; ++i)
        below.Add(m_places[i].Below(path));
    return below;
}

const Key* KeyPlace::Find()
{
    if (m_generation != m_hive->Generation())
    {
        m_found = m_hive->Find(m_path);
        m_generation = m_hive->Generation();
    }
    return m_found;
}

HKEY HandleTable::Add(OpenKey key)
{
    if (m_free.empty())
    {
        m_slots.emplace_back();
        m_free.reserve(m_slots.size()); // closing never needs memory
        m_free.push_back(m_slots.size() - 1);
    }
    const std::size_t number = m_free.back();
    Slot& slot = m_slots[number];
    slot.key = std::move(key);
    m_free.pop_back();
    return MakeHandle(number, slot.uses);
}

OpenKey* HandleTable::Find(HKEY handle) noexcept
{
    Slot* const slot = SlotOf(handle);
    return slot ? &*slot->key : nullptr;
}

bool HandleTable::Close(HKEY handle) noexcept
{
    Slot* const slot = SlotOf(handle);
    if (!slot)
        return false;
    slot->key.reset();
    ++slot->uses;
    m_free.push_back(reinterpret_cast<std::uintptr_t>(handle) % (std::uintptr_t{1} << 32) / 4 - 1);
    return true;
}

void HandleTable::MarkDeleted(const Hive& hive)
{
    for (Slot& slot : m_slots)
    {
        // Below HKEY_CLASSES_ROOT the other hive may still have the key.
        if (slot.key && !slot.key->places.AreTwo() && &slot.key->places.First().InHive() == &hive)
            slot.key->isDeleted |= !slot.key->places.First().Find();
    }
}

HandleTable::Slot* HandleTable::SlotOf(HKEY handle) noexcept
{
    const auto bits = reinterpret_cast<std::uintptr_t>(handle);
    const std::size_t number = (bits & 0xFFFFFFFF) / 4 - 1; // 0 becomes the largest number there is
    if (bits % 4 != 0 || number >= m_slots.size())
        return nullptr;
    Slot& slot = m_slots[number];
    return slot.key && slot.uses == bits >> 32 ? &slot : nullptr;
}
} // namespace Quenlor::StandIn::Registry
