#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace FraxoInfo
{
enum class Colour
{
    Heading,
    Good,
    Warning,
    Bad,
};

/// Whether Coloured colours. Off at the start: what is piped is plain text.
void UseColours(bool use);

/// The text between the terminal's codes for the colour; the bare text while colours are off.
std::string Coloured(std::string_view text, Colour colour);

/// Those of `names` that somebody who typed `typed` may have meant, the nearest first; at most three.
std::vector<std::string> NearestNames(std::string_view typed, const std::vector<std::string>& names);
} // namespace FraxoInfo
