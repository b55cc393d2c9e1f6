#include "Console.h"

#include <istream>
#include <ostream>

#include "Arguments.h"
#include "common/StoredText.h"

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
    return outIsTerminal ? Tools::Printable(text) : std::string{text};
}
} // namespace FraxoReg
