#pragma once

#include <bit>
#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
{
/// Values by names that lie elsewhere: a hash table with open addressing, made for a known number of names at most.
/// Unlike std::unordered_map it takes memory once, and a look-up touches little of it.
template<class Value>
class NameTable final
{
public:
    NameTable() = default;
    explicit NameTable(std::size_t count) : m_slots(std::bit_ceil(2 * count + 1)) {} // half of it stays free

    bool IsMade() const noexcept { return !m_slots.empty(); } ///< Else nothing may be asked of it.

    /// The value of a name; null when there is none.
    Value* Find(std::string_view name) noexcept
    {
        Slot& slot = SlotOf(name);
        return slot.IsFree() ? nullptr : &slot.value;
    }

    /// The value of a name, which gets one if it has none.
    Value& operator[](std::string_view name) noexcept
    {
        Slot& slot = SlotOf(name);
        slot.name = {name.data() ? name.data() : "", name.length()}; // an address, even of an empty name: in use
        return slot.value;
    }

    template<class Visitor>
    void ForEachName(Visitor visit) const
    {
        for (const Slot& slot : m_slots)
        {
            if (!slot.IsFree())
                visit(slot.name);
        }
    }

private:
    struct Slot
    {
        bool IsFree() const noexcept { return !name.data(); }

        std::string_view name;
        Value value;
    };

    /// Where the name is, or the free slot where it would be.
    Slot& SlotOf(std::string_view name) noexcept
    {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t slot = std::hash<std::string_view>{}(name)&mask;
        while (!m_slots[slot].IsFree() && m_slots[slot].name != name)
            slot = (slot + 1) & mask;
        return m_slots[slot];
    }

    std::vector<Slot> m_slots;
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
