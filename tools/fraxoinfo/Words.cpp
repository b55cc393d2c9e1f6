#include "Words.h"

#include <cctype>

namespace FraxoInfo
{
namespace
{
bool IsWordCharacter(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return std::isalnum(byte) != 0 || byte == '_' || byte >= 0x80; // letters beyond ASCII are several such bytes
}
} // namespace

std::size_t FindWord(std::string_view text, std::string_view word, std::size_t from)
{
    if (word.empty())
        return std::string_view::npos;
    for (std::size_t at = text.find(word, from); at != std::string_view::npos; at = text.find(word, at + 1))
    {
        const std::size_t end = at + word.length();
        const bool startsWord = at == 0 || !IsWordCharacter(text[at - 1]);
        const bool endsWord = end == text.length() || !IsWordCharacter(text[end]);
        if (startsWord && endsWord)
            return at;
    }
    return std::string_view::npos;
}
} // namespace FraxoInfo
