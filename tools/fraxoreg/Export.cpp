#include <ostream>

#include "Keys.h"
#include "Operations.h"
#include "TextFile.h"
#include "registry/RegistryFileWriter.h"

namespace FraxoReg
{
ExitStatus Export(const Arguments& arguments, const Console& console)
{
    const KeyName key = ParseKeyName(arguments.Operand(0));
    const std::string& file = arguments.Operand(1);
    const bool isStandardOutput = file == "-";
    std::string text;
    const auto write = [&](const Key& found)
    {
        using Form = Quenlor::StandIn::Registry::RegistryFileForm;
        text = WriteRegistryFile(found, key.FullName(), isStandardOutput ? Form::Hive : Form::Windows);
    };
    if (!ReadKey(key, write))
        throw NotFound();
    if (isStandardOutput)
    {
        console.out << (console.outIsTerminal ? Shown(text) : text);
        return Success;
    }
    if (!arguments.Has("/y") && FileExists(file) && !Confirm(console, "File " + file + " already exists. Overwrite "))
        return Success;
    // What may be a user's is for that user only, as the hive is.
    WriteTextFile(file, text, key.root == HKEY_LOCAL_MACHINE ? 0644 : 0600);
    console.out << Completed;
    return Success;
}
} // namespace FraxoReg
