#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "Arguments.h"
#include "FraxoReg.h"

namespace FraxoReg
{
/// Ends an operation: the message follows `ERROR: `, and the exit status is 1.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Arguments that make no sense: the message is followed by where help is found.
class WrongUse final : public Failure
{
public:
    using Failure::Failure;
};

inline WrongUse InvalidSyntax(const std::string& detail)
{
    return WrongUse{"Invalid syntax. " + detail};
}

inline Failure NotFound()
{
    return Failure{"The system was unable to find the specified registry key or value."};
}

enum ExitStatus : int
{
    Success = 0, ///< Also when the user answers no: nothing failed.
    Failed = 1,
    Partly = 2 ///< Some lines were left out, as `import --skip-errors` was told to do.
};

// The operations. They throw Failure.

ExitStatus Query(const Arguments& arguments, const Console& console);
ExitStatus Add(const Arguments& arguments, const Console& console);
ExitStatus Delete(const Arguments& arguments, const Console& console);
ExitStatus Import(const Arguments& arguments, const Console& console);
ExitStatus Export(const Arguments& arguments, const Console& console);

/// The text as a terminal may show it.
std::string Shown(std::string_view text);

/// Asks until the answer is yes or no. The end of the input is a no; after a no nothing more is to be done or said.
bool Confirm(const Console& console, const std::string& question);

inline constexpr std::string_view Completed = "The operation completed successfully.\n";
} // namespace FraxoReg
