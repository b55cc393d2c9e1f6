#include <iostream>
#include <string>
#include <unistd.h>
#include <vector>

#include "Operations.h"

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return FraxoReg::Run(arguments, {std::cin, std::cout, std::cerr, ::isatty(STDOUT_FILENO) == 1});
}
