#pragma once

#include <string>
#include <string_view>

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

/// Whether standard output is a terminal that can show colours and the user has not turned them off with NO_COLOR.
/// Prepares the terminal where that is needed. One source per system.
bool CanShowColours();
} // namespace FraxoInfo
