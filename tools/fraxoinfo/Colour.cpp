#include "Colour.h"

namespace FraxoInfo
{
namespace
{
bool usesColours = false;

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
} // namespace FraxoInfo
