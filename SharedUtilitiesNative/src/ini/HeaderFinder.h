#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "ini/Line.h"

namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
{
/// Walks through whole lines from section header to section header.
///
/// A header has a bracket, so only lines with one are looked at: skipping to the next bracket takes a third of the time
/// of cutting out every line.
class HeaderFinder final
{
public:
    explicit HeaderFinder(std::string_view lines) noexcept
        : m_lines{lines}, m_opening{lines.find('[')}, m_closing{lines.find(']')}
    {
    }

    /// Goes on to the next header. False when there is none; LinesBefore() is then all that follows the last one.
    bool Next() noexcept
    {
        const std::size_t start = m_position;
        for (auto bracket = NextBracket(); bracket != m_lines.npos; bracket = NextBracket())
        {
            const std::size_t lineStart =
                m_position + m_lines.substr(m_position, bracket - m_position).rfind('\n') + 1; // npos + 1 is 0
            const std::size_t lineEnd = m_lines.find('\n', bracket);
            m_position = lineEnd + 1;
            m_name = HeaderName(Trim(m_lines.substr(lineStart, lineEnd - lineStart)));
            if (!m_name.empty())
            {
                m_linesBefore = m_lines.substr(start, lineStart - start);
                return true;
            }
        }
        m_linesBefore = m_lines.substr(start);
        return false;
    }

    std::string_view Name() const noexcept { return m_name; }

    /// The lines between this header and the one before it.
    std::string_view LinesBefore() const noexcept { return m_linesBefore; }

private:
    std::size_t NextBracket() noexcept
    {
        // Searched for only when passed: many of one kind must not cost a search for a rare other one each.
        if (m_opening < m_position)
            m_opening = m_lines.find('[', m_position);
        if (m_closing < m_position)
            m_closing = m_lines.find(']', m_position);
        return std::min(m_opening, m_closing);
    }

    std::string_view m_lines;
    std::string_view m_linesBefore;
    std::string_view m_name;
    std::size_t m_position = 0; // where the search goes on, the start of a line
    std::size_t m_opening;      // the next bracket of each kind, npos when there is none
    std::size_t m_closing;
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
