#include "Suggestions.h"

#include <algorithm>
#include <numeric>

#include "Catalogue.h"

namespace FraxoInfo
{
namespace
{
constexpr std::size_t MostSuggestions = 3;

std::string Lower(std::string_view text)
{
    std::string lower{text};
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

/// How many single-character edits lead from one text to the other.
std::size_t EditDistance(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> row(to.length() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.length(); ++i)
    {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
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

std::vector<std::string_view> NearestNames(std::string_view name)
{
    const std::string typed = Lower(name);
    if (typed.empty())
        return {};
    std::vector<std::pair<std::size_t, std::string_view>> candidates;
    for (const Operation& operation : Catalogue())
    {
        const std::string known = Lower(operation.name);
        const std::size_t distance = EditDistance(typed, known);
        // A part of a name is as good a hint as a name with some wrong letters.
        if (distance <= std::max<std::size_t>(2, known.length() / 3) || known.find(typed) != std::string::npos)
            candidates.emplace_back(distance, operation.name);
    }
    std::ranges::sort(candidates);
    std::vector<std::string_view> names;
    for (std::size_t i = 0; i < std::min(candidates.size(), MostSuggestions); ++i)
        names.push_back(candidates[i].second);
    return names;
}
} // namespace FraxoInfo
