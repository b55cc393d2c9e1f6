#include "FraxoReg.h"

#include <algorithm>
#include <exception>
#include <istream>
#include <iterator>
#include <ostream>

#include "Arguments.h"
#include "Help.h"
#include "Operations.h"
#include "common/StoredText.h"

namespace FraxoReg
{
namespace
{
struct Operation
{
    std::string_view name;
    std::string_view help;
    ExitStatus (*run)(const Arguments& arguments, const Console& console);
};

constexpr Operation Operations[] = {{"query", QueryHelp, Query},
                                    {"add", AddHelp, Add},
                                    {"delete", DeleteHelp, Delete},
                                    {"import", ImportHelp, Import},
                                    {"export", ExportHelp, Export}};

int RunOperation(const Operation& operation, std::span<const std::string> rest, const Console& console)
{
    const Arguments arguments{operation.help, rest};
    if (!arguments.WantsHelp())
        return operation.run(arguments, console);
    console.out << operation.help;
    return Success;
}

int RunNamed(std::span<const std::string> arguments, const Console& console)
{
    const std::string name = arguments.empty() ? std::string{} : arguments.front();
    if (IsHelpSwitch(name))
    {
        console.out << GeneralHelp;
        return Success;
    }
    if (name == "--version")
    {
        console.out << "fraxoreg " FRAXOREG_VERSION "\n";
        return Success;
    }
    const auto* const operation =
        std::find_if(std::begin(Operations), std::end(Operations),
                     [&](const Operation& candidate) { return EqualIgnoringCase(candidate.name, name); });
    const bool isKnown = operation != std::end(Operations);
    try
    {
        if (isKnown)
            return RunOperation(*operation, arguments.subspan(1), console);
        throw InvalidSyntax(arguments.empty() ? "The operation is missing." : "'" + name + "' is not an operation.");
    }
    catch (const WrongUse& wrongUse)
    {
        const std::string command = isKnown ? "fraxoreg " + std::string{operation->name} : "fraxoreg";
        throw Failure{wrongUse.what() + ("\nType \"" + command + " /?\" for usage.")};
    }
}
} // namespace

std::string Shown(std::string_view text)
{
    return Tools::Printable(text, "\n");
}

bool Confirm(const Console& console, const std::string& question)
{
    for (std::string answer;;)
    {
        console.out << Shown(question) << "(Yes/No)? " << std::flush;
        const bool isAnswered = static_cast<bool>(std::getline(console.in, answer));
        if (answer.ends_with('\r'))
            answer.pop_back();
        if (isAnswered && (EqualIgnoringCase(answer, "yes") || EqualIgnoringCase(answer, "y")))
            return true;
        if (!isAnswered || EqualIgnoringCase(answer, "no") || EqualIgnoringCase(answer, "n"))
            break;
    }
    console.out << "The operation was canceled by the user.\n";
    return false;
}

int Run(std::span<const std::string> arguments, const Console& console)
try
{
    const int status = RunNamed(arguments, console);
    if (console.out.flush())
        return status;
    throw Failure{"The output could not be written."};
}
catch (const std::exception& failure)
{
    console.err << "ERROR: " << Shown(failure.what()) << '\n';
    return Failed;
}
} // namespace FraxoReg
