#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "ini/Line.h"

namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
{
/// The lines of one section, which lie elsewhere, and an index of its keys.
class Section final
{
public:
    /// Adds whole lines without headers. Not to be called after Find.
    void Append(std::string_view lines) { m_parts.push_back(lines); }

    /// The last value of a key.
    std::optional<std::string_view> Find(std::string_view key) const;

    /// Calls `visit(line)` for each key/value line, in their order.
    template<class Visitor>
    void ForEachKeyValueLine(Visitor visit) const
    {
        for (std::string_view lines : m_parts)
        {
            for (auto line = TakeKeyValueLine(lines); !line.empty(); line = TakeKeyValueLine(lines))
                visit(line);
        }
    }

private:
    void BuildIndex() const;
    std::size_t CountLines() const noexcept;
    std::string_view& Slot(std::string_view key) const noexcept;

    std::vector<std::string_view> m_parts;

    // A hash table with open addressing: the last line of each key, empty views between. Built by the first query,
    // because most sections of a file are never asked for.
    mutable std::vector<std::string_view> m_slots;
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
