#include <ostream>

#include "Failure.h"
#include "RegistryAccess.h"
#include "TextFile.h"
#include "Verbs.h"
#include "registry/RegistryFileWriter.h"

namespace FraxoReg
{
namespace
{
using Quenlor::StandIn::Registry::RegistryFileForm;

constexpr Switch Switches[] = {{"y"}, {"reg:32"}, {"reg:64"}};

constexpr std::string_view Help = R"(
fraxoreg EXPORT KeyName FileName [/y] [/reg:32 | /reg:64]

  KeyName    ROOTKEY[\SubKey], with the root key HKLM, HKCU or HKCR or its long
             name.

  FileName   The name of the file to export to, in the form that Windows'
             registry editor writes and reads (UTF-16). The file is written
             whole or not at all.
             - stands for the standard output, as UTF-8.

  /y         Overwrites an existing file without a question.

  /reg:32, /reg:64
             Accepted as on Windows. There is one view of the registry.

  Nothing is written when the question is answered with No, or not at all; the
  return code is 0 then.

Examples:

  fraxoreg EXPORT 'HKLM\Software\MyCo\MyApp' AppBkUp.reg
    Exports all subkeys and values of the key MyApp to the file AppBkUp.reg

  fraxoreg EXPORT HKCU - | grep -i timeout
    Searches all settings of this user
)";

ExitStatus Run(const Arguments& arguments, const Console& console)
{
    const KeyName key = ParseKeyName(arguments.Operand(0));
    const std::string& file = arguments.Operand(1);
    const bool isStandardOutput = file == "-";
    std::string text;
    ReadKey(key,
            [&](const Key& found)
            {
        const RegistryFileForm form = isStandardOutput ? RegistryFileForm::Hive : RegistryFileForm::Windows;
        text = WriteRegistryFile(found, key.FullName(), form);
    });
    if (isStandardOutput)
    {
        console.out << text;
        return Success;
    }
    if (!arguments.Has("y") && FileExists(file) && !console.Confirm("File " + file + " already exists. Overwrite "))
    {
        console.out << Canceled;
        return Success;
    }
    WriteTextFile(file, text);
    console.out << Completed;
    return Success;
}
} // namespace

const Verb ExportVerb{"EXPORT", 2, Switches, Help, Run};
} // namespace FraxoReg
