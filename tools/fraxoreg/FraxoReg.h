#pragma once

#include <iosfwd>
#include <span>
#include <string>

namespace FraxoReg
{
struct Console
{
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool outIsTerminal = false;
};

/// Does what the arguments (without the program's name) say, as Windows' reg.exe does.
/// @return the exit status, see ExitStatus
int Run(std::span<const std::string> arguments, const Console& console);
} // namespace FraxoReg
