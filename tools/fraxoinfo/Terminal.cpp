#include "Terminal.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "common/StoredText.h"

namespace FraxoInfo
{
namespace
{
bool usesColours = false;

/// How many single-character edits lead from one text to the other.
std::size_t EditDistance(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> row(to.length() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.length(); ++i)
    {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.length(); ++j)
        {
            const std::size_t substituted = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({substituted, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}
} // namespace

void UseColours(bool use)
{
    usesColours = use;
}

std::string Coloured(std::string_view text, Colour colour)
{
    return usesColours ? fmt::format("\x1b[{}m{}\x1b[0m", static_cast<int>(colour), text) : std::string{text};
}

std::vector<std::string> NearestNames(std::string_view typed, const std::vector<std::string>& names)
{
    const std::string wanted = Tools::Lower(typed);
    std::vector<std::pair<std::size_t, std::string>> candidates;
    for (const std::string& name : names)
    {
        const std::string known = Tools::Lower(name);
        const std::size_t distance = EditDistance(wanted, known);
        // A part of a name is as good a hint as a name with some wrong letters.
        if (!wanted.empty() &&
            (distance <= std::max<std::size_t>(2, known.length() / 3) || known.find(wanted) != std::string::npos))
            candidates.emplace_back(distance, name);
    }
    std::ranges::sort(candidates);
    std::vector<std::string> nearest;
    for (const auto& [distance, name] : candidates)
    {
        if (nearest.size() < 3)
            nearest.push_back(name);
    }
    return nearest;
}
} // namespace FraxoInfo
