#pragma once

#include <span>
#include <string>

#include "Console.h"

namespace FraxoReg
{
/// Does what the arguments (without the program's name) say, as Windows' reg.exe does.
/// @return the exit status, see ExitStatus
int Run(std::span<const std::string> arguments, const Console& console);
} // namespace FraxoReg
