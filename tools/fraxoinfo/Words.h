#pragma once

#include <cstddef>
#include <string_view>

namespace FraxoInfo
{
/// Where `word` next stands in `text` with nothing of a word before or behind it: "de" does not stand in "Model".
/// @return npos when it does not, or is empty
std::size_t FindWord(std::string_view text, std::string_view word, std::size_t from = 0);
} // namespace FraxoInfo
