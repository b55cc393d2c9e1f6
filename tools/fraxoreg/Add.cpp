#include <ostream>

#include "Failure.h"
#include "RegistryAccess.h"
#include "ValueText.h"
#include "Verbs.h"
#include "registry/RegistryPath.h"
#include "registry/RegistryText.h"

namespace FraxoReg
{
namespace
{
namespace Registry = Quenlor::StandIn::Registry;

constexpr Switch Switches[] = {{"v", Takes::Text}, {"ve"}, {"t", Takes::Text}, {"s", Takes::Text},
                               {"d", Takes::Text}, {"f"},  {"reg:32"},         {"reg:64"}};

constexpr std::string_view Help = R"(
fraxoreg ADD KeyName [/v ValueName | /ve] [/t Type] [/s Separator] [/d Data] [/f]
             [/reg:32 | /reg:64]

  KeyName  ROOTKEY\SubKey, with the root key HKLM, HKCU or HKCR or its long
           name. The key is created with all levels that are missing.

  /v       The value name, under the selected key, to add.

  /ve      Adds an empty value name (Default) for the key.

  /t       RegKey data types
           [ REG_SZ    | REG_MULTI_SZ | REG_EXPAND_SZ |
             REG_DWORD | REG_QWORD    | REG_BINARY    | REG_NONE ]
           If omitted, REG_SZ is assumed.

  /s       One character that stands between the strings of REG_MULTI_SZ data.
           If omitted, "\0" is the separator.

  /d       The data to assign to the value that is added: numbers in decimal, or
           in hexadecimal behind 0x; binary data in hexadecimal digits.

  /f       Overwrites an existing value without a question.

  /reg:32, /reg:64
           Accepted as on Windows. There is one view of the registry.

  Nothing is changed when the question is answered with No, or not at all; the
  return code is 0 then.

Examples:

  fraxoreg ADD 'HKLM\Software\MyCo'
    Adds the key HKLM\Software\MyCo

  fraxoreg ADD 'HKLM\Software\MyCo' /v Data /t REG_BINARY /d fe340ead
    Adds a value (name: Data, type: REG_BINARY, data: fe340ead)

  fraxoreg ADD 'HKLM\Software\MyCo' /v MRU /t REG_MULTI_SZ /d 'fax\0mail'
    Adds a value (name: MRU, type: REG_MULTI_SZ, data: fax\0mail\0\0)

  fraxoreg ADD 'HKCU\Software\MyCo' /v Path /t REG_EXPAND_SZ /d '%HOME%/bin' /f
    Adds a value (name: Path, type: REG_EXPAND_SZ, data: %HOME%/bin)
)";

DWORD TypeOf(const Arguments& arguments)
{
    const std::optional<DWORD> type = TypeOfName(arguments.Text("t").value_or("REG_SZ"));
    if (!type)
        throw InvalidSyntax("Specify valid type for '/t'.");
    return *type;
}

std::string SeparatorOf(const Arguments& arguments)
{
    std::string separator = arguments.Text("s").value_or(std::string{DefaultSeparator});
    if (arguments.Has("s") && Registry::Utf16Length(separator) != 1)
        throw InvalidSyntax("Specify one character for '/s'.");
    return separator;
}

ExitStatus Run(const Arguments& arguments, const Console& console)
{
    arguments.RefuseTogether({"v", "ve"});
    const KeyName key = ParseKeyName(arguments.Operand(0));
    const std::string name = arguments.Text("v").value_or("");
    const bool hasValue = arguments.Has("v") || arguments.Has("ve") || arguments.Has("t") || arguments.Has("d");
    const DWORD type = TypeOf(arguments);
    const std::string data = hasValue ? ParseData(type, arguments.Text("d"), SeparatorOf(arguments)) : "";
    if (!Registry::IsLegalValueName(name))
        throw InvalidSyntax("Specify valid value name for '/v'.");

    if (hasValue && !arguments.Has("f") && HasValue(key, name) &&
        !console.Confirm("Value " + ShownName(name) + " exists, overwrite"))
    {
        console.out << Canceled;
        return Success;
    }
    const KeyName place = PlaceOf(key);
    ChangeHive(place.root,
               [&](Key& hive)
               {
        Key& target = hive.Create(place.path);
        if (hasValue)
            target.SetValue(name, type, data);
        return ERROR_SUCCESS;
    });
    console.out << Completed;
    return Success;
}
} // namespace

const Verb AddVerb{"ADD", 1, Switches, Help, Run};
} // namespace FraxoReg
