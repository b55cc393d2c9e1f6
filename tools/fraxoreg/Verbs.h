#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "Arguments.h"
#include "Console.h"

namespace FraxoReg
{
enum ExitStatus : int
{
    Success = 0, ///< Also when the user answers no: nothing failed.
    Failed = 1,  ///< Nothing was changed.
    Partly = 2   ///< Some lines were left out, as `import --skip-errors` was told to do.
};

/// One thing that the tool does. Its functions throw Failure.
struct Verb
{
    std::string_view name;
    std::size_t operandCount;
    std::span<const Switch> switches;
    std::string_view help;
    ExitStatus (*run)(const Arguments& arguments, const Console& console);
};

extern const Verb QueryVerb;
extern const Verb AddVerb;
extern const Verb DeleteVerb;
extern const Verb ImportVerb;
extern const Verb ExportVerb;
} // namespace FraxoReg
