#include <functional>
#include <ostream>
#include <string>

#include "Failure.h"
#include "RegistryAccess.h"
#include "ValueText.h"
#include "Verbs.h"

namespace FraxoReg
{
namespace
{
constexpr Switch Switches[] = {{"v", Takes::Text}, {"ve"}, {"va"}, {"f"}, {"reg:32"}, {"reg:64"}};

constexpr std::string_view Help = R"(
fraxoreg DELETE KeyName [/v ValueName | /ve | /va] [/f] [/reg:32 | /reg:64]

  KeyName  ROOTKEY\SubKey, with the root key HKLM, HKCU or HKCR or its long
           name.

  /v       The value name, under the selected key, to delete.
           When omitted, the key with all subkeys and values is deleted.

  /ve      Deletes the value of the empty value name (Default).

  /va      Deletes all values under this key.

  /f       Deletes without a question.

  /reg:32, /reg:64
           Accepted as on Windows. There is one view of the registry.

  Nothing is changed when the question is answered with No, or not at all; the
  return code is 0 then.

Examples:

  fraxoreg DELETE 'HKLM\Software\MyCo\MyApp\Timeout'
    Deletes the registry key Timeout and its all subkeys and values

  fraxoreg DELETE 'HKCU\Software\MyCo' /v MTU
    Deletes the registry value MTU under MyCo

  fraxoreg DELETE 'HKCU\Software\MyCo' /va /f
    Deletes all values under MyCo without a question
)";

/// What is to be deleted, and how.
struct Deletion
{
    std::string question;
    KeyName place;
    bool exists;
    std::function<bool(Key& hive)> run; ///< False when it is gone.
};

Deletion OfValue(const KeyName& key, const std::string& name)
{
    const KeyName place = PlaceOfValue(key, name);
    return {"Permanently delete the registry value " + ShownName(name) + " ", place, HasValue(key, name),
            [=](Key& hive)
            {
        Key* const found = hive.Find(place.path);
        return found && found->DeleteValue(name);
            }};
}

Deletion OfAllValues(const KeyName& key)
{
    const KeyName place = PlaceOf(key);
    return {"Delete all values under the registry key " + key.FullName() + " ", place, HasKey(key),
            [=](Key& hive)
            {
        Key* const found = hive.Find(place.path);
        while (found && !found->Values().empty())
            found->DeleteValue(std::string{found->Values().back()->name});
        return found != nullptr;
            }};
}

Deletion OfKey(const KeyName& key)
{
    if (key.path.empty())
        throw Failure{"A root key cannot be deleted."};
    const KeyName place = PlaceOf(key);
    return {"Permanently delete the registry key " + key.FullName() + " ", place, HasKey(key),
            [=](Key& hive) { return hive.Delete(place.path); }};
}

Deletion Chosen(const Arguments& arguments)
{
    arguments.RefuseTogether({"v", "ve", "va"});
    const KeyName key = ParseKeyName(arguments.Operand(0));
    if (arguments.Has("v") || arguments.Has("ve"))
        return OfValue(key, arguments.Text("v").value_or(""));
    return arguments.Has("va") ? OfAllValues(key) : OfKey(key);
}

ExitStatus Run(const Arguments& arguments, const Console& console)
{
    const Deletion deletion = Chosen(arguments);
    if (!deletion.exists)
        throw NotFound();
    if (!arguments.Has("f") && !console.Confirm(deletion.question))
    {
        console.out << Canceled;
        return Success;
    }
    ChangeHive(deletion.place.root,
               [&](Key& hive) { return deletion.run(hive) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND; });
    console.out << Completed;
    return Success;
}
} // namespace

const Verb DeleteVerb{"DELETE", 1, Switches, Help, Run};
} // namespace FraxoReg
