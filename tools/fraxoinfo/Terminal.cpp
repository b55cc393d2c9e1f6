#include "Terminal.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace FraxoInfo
{
namespace
{
bool usesColours = false;

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
const char* CodeOf(Colour colour)
{
    switch (colour)
    {
    case Colour::Heading:
        return "\x1b[1m";
    case Colour::Good:
        return "\x1b[32m";
    case Colour::Warning:
        return "\x1b[33m";
    case Colour::Bad:
        return "\x1b[31m";
    }
    return "";
}
} // namespace

void UseColours(bool use)
{
    usesColours = use;
}

std::string Coloured(std::string_view text, Colour colour)
{
    return usesColours ? CodeOf(colour) + std::string{text} + "\x1b[0m" : std::string{text};
}

std::vector<std::string> NearestNames(std::string_view typed, const std::vector<std::string>& names)
{
    const std::string wanted = Lower(typed);
    if (wanted.empty())
        return {};
    std::vector<std::pair<std::size_t, std::string>> candidates;
    for (const std::string& name : names)
    {
        const std::string known = Lower(name);
        const std::size_t distance = EditDistance(wanted, known);
        // A part of a name is as good a hint as a name with some wrong letters.
        if (distance <= std::max<std::size_t>(2, known.length() / 3) || known.find(wanted) != std::string::npos)
            candidates.emplace_back(distance, name);
    }
    std::ranges::sort(candidates);
    constexpr std::size_t most = 3;
    candidates.resize(std::min(candidates.size(), most));
    std::vector<std::string> nearest;
    nearest.reserve(candidates.size());
    for (const auto& candidate : candidates)
        nearest.push_back(candidate.second);
    return nearest;
}
} // namespace FraxoInfo
