#include "ini/Section.h"

#include <bit>
#include <functional>

namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
{
std::optional<std::string_view> Section::Find(std::string_view key) const
{
    if (m_slots.empty())
        BuildIndex();
    const std::string_view line = Slot(key);
    if (line.empty())
        return {};
    return ValueOf(line);
}

void Section::BuildIndex() const
{
    const std::size_t lines = CountLines();
    m_slots.resize(std::bit_ceil(lines + lines / 3 + 1)); // a quarter of it stays free; the size is a power of two
    ForEachKeyValueLine([this](std::string_view line) { Slot(KeyOf(line)) = line; });
}

std::size_t Section::CountLines() const noexcept
{
    std::size_t count = 0;
    for (const std::string_view lines : m_parts)
    {
        for (auto end = lines.find('\n'); end != lines.npos; end = lines.find('\n', end + 1))
            ++count;
    }
    return count;
}

/// The place of a key in the table: that of its line, or the free one where it would be.
std::string_view& Section::Slot(std::string_view key) const noexcept
{
    const std::size_t mask = m_slots.size() - 1;
    const auto isOther = [key](std::string_view line)
    { return !line.starts_with(key) || KeyOf(line).length() != key.length(); };
    std::size_t slot = std::hash<std::string_view>{}(key)&mask;
    while (!m_slots[slot].empty() && isOther(m_slots[slot]))
        slot = (slot + 1) & mask;
    return m_slots[slot];
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
