#pragma once

#include <initializer_list>
#include <iosfwd>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace FraxoReg
{
struct Console
{
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool outIsTerminal = false;
};

/// Ends an operation: the message follows `ERROR: `, and the exit status is 1.
struct Failure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Arguments that make no sense: the message is followed by where help is found.
struct WrongUse final : Failure
{
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

bool EqualIgnoringCase(std::string_view left, std::string_view right);
bool IsHelpSwitch(std::string_view argument) noexcept;

/// The arguments of an operation, as its help defines them.
///
/// A line of the help that starts with two blanks defines an operand (`  KeyName  text`) or a switch, which takes the
/// next argument if one blank and a placeholder follow it (`  /v ValueName  text`).
class Arguments final
{
public:
    /// A switch that takes text takes whatever follows: data and files may well start with a slash.
    /// @throws WrongUse
    Arguments(std::string_view help, std::span<const std::string> arguments);

    bool WantsHelp() const noexcept { return m_wantsHelp; } ///< Then the rest is not checked.
    const std::string& Operand(std::size_t index) const { return m_operands.at(index); }
    bool Has(std::string_view name) const;                        ///< `name` starts with its sign.
    std::optional<std::string> Text(std::string_view name) const; ///< What was given with the switch.

    void RefuseTogether(std::initializer_list<const char*> names) const; ///< @throws WrongUse

private:
    std::vector<std::string> m_operands;
    std::map<std::string, std::string> m_switches; // by their names without a sign, in small letters
    bool m_wantsHelp = false;
};

enum ExitStatus : int
{
    Success = 0, ///< Including when the user answers no: nothing failed.
    Failed = 1,
    Partly = 2 ///< Some lines were left out, as `import --skip-errors` does.
};

// The operations. They throw Failure.

ExitStatus Query(const Arguments& arguments, const Console& console);
ExitStatus Add(const Arguments& arguments, const Console& console);
ExitStatus Delete(const Arguments& arguments, const Console& console);
ExitStatus Import(const Arguments& arguments, const Console& console);
ExitStatus Export(const Arguments& arguments, const Console& console);

/// Does what the arguments (without the program's name) say, as Windows' reg.exe does.
/// @return the exit status, see ExitStatus
int Run(std::span<const std::string> arguments, const Console& console);

/// The text as a terminal may show it.
std::string Shown(std::string_view text);

/// Asks until the answer is yes or no. The end of the input is a no. After a no nothing more is to be done or printed.
bool Confirm(const Console& console, const std::string& question);

inline constexpr std::string_view Completed = "The operation completed successfully.\n";
} // namespace FraxoReg
