#include "FraxoReg.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <ostream>
#include <string_view>

#include "Arguments.h"
#include "Failure.h"
#include "Verbs.h"

namespace FraxoReg
{
namespace
{
const Verb* const Verbs[] = {&QueryVerb, &AddVerb, &DeleteVerb, &ImportVerb, &ExportVerb};

constexpr std::string_view Help = R"(
fraxoreg Operation [Parameter List]

  Operation  [ QUERY | ADD | DELETE | IMPORT | EXPORT ]

Return Code:

  0 - Successful
  1 - Failed, and nothing was changed
  2 - Imported without the lines that --skip-errors left out

For help on a specific operation type:

  fraxoreg Operation /?

Examples:

  fraxoreg QUERY /?
  fraxoreg ADD /?
  fraxoreg DELETE /?
  fraxoreg IMPORT /?
  fraxoreg EXPORT /?

Switches start with / or -. --help is the same as /?, and --version tells the
version. In a shell, key names need single quotes: 'HKCU\Software'.
)";

const Verb* FindVerb(std::string_view name) noexcept
{
    const auto* const found = std::find_if(std::begin(Verbs), std::end(Verbs),
                                           [name](const Verb* verb) { return EqualIgnoringCase(verb->name, name); });
    return found == std::end(Verbs) ? nullptr : *found;
}

int ReportWrongUse(const WrongUse& wrongUse, const Verb* verb, const Console& console)
{
    console.err << "ERROR: " << wrongUse.what() << "\nType \"fraxoreg ";
    if (verb)
        console.err << verb->name << ' ';
    console.err << "/?\" for usage.\n";
    if (!wrongUse.Hint().empty())
        console.err << wrongUse.Hint() << '\n';
    return Failed;
}

int RunVerb(const Verb& verb, std::span<const std::string> rest, const Console& console)
{
    const Arguments arguments{rest, verb.operandCount, verb.switches};
    if (!arguments.WantsHelp())
        return verb.run(arguments, console);
    console.out << verb.help;
    return Success;
}

int RunNamed(const std::string& name, std::span<const std::string> rest, const Console& console)
{
    if (IsHelpSwitch(name))
    {
        console.out << Help;
        return Success;
    }
    if (name == "--version")
    {
        console.out << "fraxoreg " FRAXOREG_VERSION "\n";
        return Success;
    }
    const Verb* const verb = FindVerb(name);
    try
    {
        if (!verb)
            throw InvalidSyntax();
        return RunVerb(*verb, rest, console);
    }
    catch (const WrongUse& wrongUse)
    {
        return ReportWrongUse(wrongUse, verb, console);
    }
}
} // namespace

int Run(std::span<const std::string> arguments, const Console& console)
try
{
    if (arguments.empty())
        return ReportWrongUse(InvalidSyntax(), nullptr, console);
    const int status = RunNamed(arguments.front(), arguments.subspan(1), console);
    if (console.out.flush())
        return status;
    throw Failure{"The output could not be written."};
}
catch (const std::exception& failure)
{
    console.err << "ERROR: " << failure.what() << '\n';
    return Failed;
}
} // namespace FraxoReg
