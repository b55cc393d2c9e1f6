#include "common/StoredText.h"

#include <algorithm>
#include <cstddef>

namespace Tools
{
namespace
{
constexpr unsigned char ByteOf(char character) noexcept
{
    return static_cast<unsigned char>(character);
}

/// The length of the UTF-8 sequence at the start of the text; 0 when there is none.
std::size_t SequenceLength(std::string_view text) noexcept
{
    const unsigned char lead = ByteOf(text.front());
    if (lead < 0x80)
        return 1;
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const std::string_view rest = text.substr(1, length - 1);
    const bool continues = std::all_of(rest.begin(), rest.end(), [](char c) { return (ByteOf(c) & 0xC0) == 0x80; });
    return continues && rest.size() == length - 1 ? length : 0;
}

bool IsControl(std::string_view sequence) noexcept
{
    const unsigned char first = ByteOf(sequence.front());
    return first < 0x20 || first == 0x7F || (first == 0xC2 && ByteOf(sequence[1]) < 0xA0); // C1 is U+0080 to U+009F
}
} // namespace

std::string Printable(std::string_view text, std::string_view kept)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string printable;
    while (!text.empty())
    {
        const std::size_t length = SequenceLength(text);
        const std::string_view sequence = text.substr(0, std::max<std::size_t>(length, 1));
        if (length != 0 && (!IsControl(sequence) || kept.find(sequence.front()) != std::string_view::npos))
            printable += sequence;
        else
        {
            const unsigned char code = ByteOf(sequence.back()); // of a C1 character too: its second byte
            printable.append("\\x").append(1, digits[code >> 4]).append(1, digits[code & 0xF]);
        }
        text.remove_prefix(sequence.size());
    }
    return printable;
}
} // namespace Tools
