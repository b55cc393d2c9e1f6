#include "Pattern.h"

#include "posix/CaseFolding.h"

namespace FraxoReg
{
namespace
{
/// The size of the character that stands first in UTF-8 text.
std::size_t FirstCharacterSize(std::string_view text) noexcept
{
    std::size_t size = 1;
    while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80)
        ++size;
    return size;
}

/// Goes back to the last `*` alone, so that no pattern takes exponential time.
bool MatchesWhole(std::string_view pattern, std::string_view text) noexcept
{
    std::string_view afterStar;
    std::string_view textAfterStar;
    bool hasStar = false;
    while (!text.empty())
    {
        if (pattern.starts_with('*'))
        {
            pattern.remove_prefix(1);
            hasStar = true;
            afterStar = pattern;
            textAfterStar = text;
        }
        else if (pattern.starts_with('?'))
        {
            pattern.remove_prefix(1);
            text.remove_prefix(FirstCharacterSize(text));
        }
        else if (!pattern.empty() && pattern.front() == text.front())
        {
            pattern.remove_prefix(1);
            text.remove_prefix(1);
        }
        else if (hasStar)
        {
            textAfterStar.remove_prefix(FirstCharacterSize(textAfterStar));
            pattern = afterStar;
            text = textAfterStar;
        }
        else
            return false;
    }
    return pattern.find_first_not_of('*') == std::string_view::npos;
}
} // namespace

Pattern::Pattern(std::string_view text, Case letterCase, Extent extent)
    : m_case{letterCase}, m_text{letterCase == Case::Ignored ? Quenlor::Posix::FoldCase(text) : std::string{text}}
{
    if (extent == Extent::Anywhere)
        m_text = '*' + m_text + '*';
}

bool Pattern::Matches(std::string_view text) const
{
    return m_case == Case::Ignored ? MatchesWhole(m_text, Quenlor::Posix::FoldCase(text)) : MatchesWhole(m_text, text);
}
} // namespace FraxoReg
