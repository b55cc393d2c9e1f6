#include "Console.h"

#include <istream>
#include <ostream>

#include "Arguments.h"

namespace FraxoReg
{
bool Console::Confirm(const std::string& question) const
{
    for (;;)
    {
        out << Shown(question) << "(Yes/No)? " << std::flush;
        std::string answer;
        if (!std::getline(in, answer))
        {
            out << '\n';
            return false;
        }
        if (answer.ends_with('\r'))
            answer.pop_back();
        if (EqualIgnoringCase(answer, "yes") || EqualIgnoringCase(answer, "y"))
            return true;
        if (EqualIgnoringCase(answer, "no") || EqualIgnoringCase(answer, "n"))
            return false;
    }
}

std::string Console::Shown(std::string_view text) const
{
    return outIsTerminal ? EscapeControls(text) : std::string{text};
}

std::string EscapeControls(std::string_view text)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string escaped;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
        const bool startsC1 = byte == 0xC2 && next >= 0x80 && next < 0xA0; // U+0080 to U+009F
        if (byte >= 0x20 && byte != 0x7F && !startsC1)
        {
            escaped += text[i];
            continue;
        }
        const unsigned char shown = startsC1 ? next : byte;
        escaped.append("\\x").append(1, digits[shown >> 4]).append(1, digits[shown & 0xF]);
        i += startsC1 ? 1 : 0;
    }
    return escaped;
}
} // namespace FraxoReg
