#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <Quenlor/Utf8String.h>
#include <fmt/ranges.h>

/// The library's texts are formatted like any other.
template<>
struct fmt::formatter<Quenlor::Utf8String> : fmt::formatter<std::string_view>
{
    auto format(const Quenlor::Utf8String& text, format_context& context) const
    {
        return formatter<std::string_view>::format(std::string_view{text}, context);
    }
};

namespace FraxoInfo
{
/// With the number of the terminal's code for it.
enum class Colour
{
    Heading = 1,
    Bad = 31,
    Good = 32,
    Warning = 33,
};

/// Whether Coloured adds colours. Off at the start: what is piped is plain text.
void UseColours(bool use);

/// The text in that colour; the bare text while colours are off.
std::string Coloured(std::string_view text, Colour colour);

/// Up to three of `names` that `typed` may have been meant to be, the nearest first.
std::vector<std::string> NearestNames(std::string_view typed, const std::vector<std::string>& names);
} // namespace FraxoInfo
