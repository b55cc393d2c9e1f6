#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "ini/Line.h"
#include "ini/NameTable.h"

namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
{
/// The lines of one section, which lie elsewhere, and an index of its keys.
class Section final
{
public:
    /// Adds whole lines without headers. Not to be called after Find.
    void Append(std::string_view lines) { m_parts.push_back(lines); }

    /// The last value of a key; null when there is none.
    const std::string_view* Find(std::string_view key) const
    {
        if (!m_values.IsMade())
            BuildIndex();
        return m_values.Find(key);
    }

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

    std::vector<std::string_view> m_parts;
    mutable NameTable<std::string_view>
        m_values; // made by the first query: most sections of a file are never asked for
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
