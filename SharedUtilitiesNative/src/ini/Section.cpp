#include "ini/Section.h"

namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
{
void Section::BuildIndex() const
{
    m_values = NameTable<std::string_view>{CountLines()};
    ForEachKeyValueLine([this](std::string_view line) { m_values[KeyOf(line)] = ValueOf(line); });
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
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
