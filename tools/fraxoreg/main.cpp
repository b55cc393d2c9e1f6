#include <iostream>
#include <string>
#include <unistd.h>
#include <vector>

#include "FraxoReg.h"

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return FraxoReg::Run(arguments, {.in = std::cin,
                                     .out = std::cout,
                                     .err = std::cerr,
                                     .outIsTerminal = ::isatty(STDOUT_FILENO) == 1,
                                     .errIsTerminal = ::isatty(STDERR_FILENO) == 1});
}
