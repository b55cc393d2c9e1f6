#include "Operations.h"

#include <algorithm>
#include <exception>
#include <istream>
#include <iterator>
#include <ostream>

#include "common/StoredText.h"

namespace FraxoReg
{
namespace
{
// What `/?` prints. The manual page is made from it (manual.awk), and Arguments and the completion of bash read it. A
// line that starts with two blanks defines an argument, one with four is an example.

constexpr std::string_view GeneralHelp = R"(fraxoreg: read and change the registry from a shell
Usage: fraxoreg Operation [Argument...]

On Linux the programs of the family keep a registry in text files. This program
reads and changes it with the operations and arguments of reg.exe on Windows.
Programs that run see a change at once. Letter case does not matter in
operations, switches and names, and a switch may start with - as well.

Operations:

  query   Shows the values of a key and the keys below it.
  add     Creates a key and stores a value.
  delete  Deletes a key or values.
  import  Reads a registry file.
  export  Writes a registry file.

Options:

  /?, --help      Prints this text or, after an operation, its arguments.
  --version       Prints the version.
  /reg:32, /reg:64
                  Ignored after any operation. There is one view of the
                  registry.

Key names:

A key name is a root and the names below it, with backslashes between them. The
roots are HKEY_LOCAL_MACHINE (HKLM), HKEY_CURRENT_USER (HKCU) and
HKEY_CLASSES_ROOT (HKCR). In a shell a key name needs single quotes.

HKCR shows Software\Classes of HKCU and, where that has nothing of the name, of
HKLM. A change is made in HKCU if the key exists there, otherwise in HKLM.

Exit status:

  0  Success. Also when a question was answered with No and nothing was changed.
  1  Failure, or a search without a match.
  2  Imported without the lines that --skip-errors left out.

Environment:

  QUENLOR_REGISTRY_DIR
                  The folder of both registry files, instead of those below.

Files:

  /var/lib/quenlor/registry/HKEY_LOCAL_MACHINE.reg
                  The registry of the machine.
  ~/.config/quenlor/registry/HKEY_CURRENT_USER.reg
                  That of the user; below $XDG_CONFIG_HOME instead of ~/.config
                  where that is set.
)";

constexpr std::string_view QueryHelp = R"(Usage: fraxoreg query KeyName [/v ValueName | /ve] [/s] [/se Separator]

Shows the values of a key and the keys below it. Control characters in names and
data are shown as \x1b and the like; export gives them exactly.

  KeyName         The key, for instance 'HKLM\Software\MyCo'.
  /v ValueName    Only this value.
  /ve             Only the value without a name, (Default).
  /s              All keys below as well.
  /se Separator   The character between the strings of REG_MULTI_SZ data,
                  instead of \0.

Examples:

    fraxoreg query 'HKLM\Software\MyCo' /v Version
    fraxoreg query HKCU /s /v Version
)";

constexpr std::string_view AddHelp =
    R"(Usage: fraxoreg add KeyName [/v ValueName | /ve] [/t Type] [/s Separator] [/d Data]
             [/f]

Creates a key with all levels that are missing, and stores a value if one is
given.

  KeyName         The key, for instance 'HKCU\Software\MyCo'.
  /v ValueName    The name of the value.
  /ve             Stores the value without a name, (Default).
  /t Type         REG_SZ, REG_MULTI_SZ, REG_EXPAND_SZ, REG_DWORD, REG_QWORD,
                  REG_BINARY or REG_NONE; REG_SZ if omitted.
  /s Separator    The character between the strings of REG_MULTI_SZ data,
                  instead of \0.
  /d Data         The data: a number in decimal, or in hexadecimal after 0x;
                  REG_BINARY in hexadecimal digits.
  /f              Overwrites an existing value without a question.

Examples:

    fraxoreg add 'HKCU\Software\MyCo' /v Path /d /opt/myco /f
    fraxoreg add 'HKLM\Software\MyCo' /v MRU /t REG_MULTI_SZ /d 'fax\0mail'
)";

constexpr std::string_view DeleteHelp = R"(Usage: fraxoreg delete KeyName [/v ValueName | /ve | /va] [/f]

Deletes a key with everything below it, or values of a key.

  KeyName         The key, for instance 'HKCU\Software\MyCo'.
  /v ValueName    Deletes only this value.
  /ve             Deletes only the value without a name, (Default).
  /va             Deletes all values of the key, but not the key.
  /f              Deletes without a question.

Example:

    fraxoreg delete 'HKCU\Software\MyCo' /v Timeout /f
)";

constexpr std::string_view ImportHelp = R"(Usage: fraxoreg import FileName [--skip-errors]

Reads a registry file that export or the registry editor of Windows wrote:
version 5.00 or REGEDIT4, UTF-16 or UTF-8. Of HKLM all changes are made or none,
and then of HKCU. A key of HKCR goes to HKCU if it exists there when the import
begins, otherwise to HKLM.

  FileName        The file, or - for the standard input.
  --skip-errors   Imports the good lines of a file that has malformed ones, and
                  lists those that were left out. Without it such a file is
                  refused.

Example:

    fraxoreg export 'HKCU\Software\MyCo' - | ssh other fraxoreg import -
)";

constexpr std::string_view ExportHelp = R"(Usage: fraxoreg export KeyName FileName [/y]

Writes a key with everything below it into a registry file (UTF-16), which the
registry editor of Windows can read. The file is written whole or not at all. A
file with keys of HKCU or HKCR can be read only by the user who exports.

  KeyName         The key, for instance 'HKCU\Software\MyCo'.
  FileName        The file, or - for the standard output, in UTF-8.
  /y              Overwrites an existing file without a question.

Example:

    fraxoreg export 'HKLM\Software\MyCo' myco.reg /y
)";

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

int RunNamed(std::span<const std::string> arguments, const Console& console)
{
    const std::string name = arguments.empty() ? std::string{} : arguments.front();
    if (IsHelpSwitch(name) || name == "--version")
    {
        console.out << (IsHelpSwitch(name) ? GeneralHelp : "fraxoreg " FRAXOREG_VERSION "\n");
        return Success;
    }
    const auto* const operation = std::ranges::find_if(Operations, [&](const Operation& candidate)
                                                       { return EqualIgnoringCase(candidate.name, name); });
    const bool isKnown = operation != std::end(Operations);
    try
    {
        if (!isKnown)
            throw InvalidSyntax(arguments.empty() ? "The operation is missing."
                                                  : "'" + name + "' is not an operation.");
        const Arguments given{operation->help, arguments.subspan(1)};
        if (!given.WantsHelp())
            return operation->run(given, console);
        console.out << operation->help;
        return Success;
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
