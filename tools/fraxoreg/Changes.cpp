#include <ostream>

#include "Keys.h"
#include "Operations.h"
#include "ValueText.h"
#include "registry/RegistryPath.h"

namespace FraxoReg
{
namespace
{
namespace Registry = Quenlor::StandIn::Registry;

bool HasValue(const KeyName& name, std::string_view valueName)
{
    bool hasValue = false;
    ReadKey(name, [&](const Key& key) { hasValue = key.FindValue(valueName) != nullptr; });
    return hasValue;
}
} // namespace

ExitStatus Add(const Arguments& arguments, const Console& console)
{
    arguments.RefuseTogether({"/v", "/ve"});
    const KeyName key = ParseKeyName(arguments.Operand(0));
    const std::string name = arguments.Text("/v").value_or("");
    if (!Registry::IsLegalValueName(name))
        throw InvalidSyntax("The name of the value is too long, or has a line break.");
    const std::string separator = SeparatorOf(arguments, "/s");
    const DWORD type = TypeOfName(arguments.Text("/t").value_or("REG_SZ"));
    const std::string data = ParseData(type, arguments.Text("/d").value_or(""), separator);

    const bool hasValue = arguments.Has("/v") || arguments.Has("/ve") || arguments.Has("/t") || arguments.Has("/d");
    if (hasValue && !arguments.Has("/f") && HasValue(key, name) &&
        !Confirm(console, "Value " + ShownName(name) + " exists, overwrite"))
        return Success;
    const KeyName place = PlaceOf(key);
    const auto edit = [&](Key& hive)
    {
        Key& target = hive.Create(place.path);
        if (hasValue)
            target.SetValue(name, type, data);
        return ERROR_SUCCESS;
    };
    ChangeHive(place.root, edit);
    console.out << Completed;
    return Success;
}

ExitStatus Delete(const Arguments& arguments, const Console& console)
{
    arguments.RefuseTogether({"/v", "/ve", "/va"});
    const KeyName key = ParseKeyName(arguments.Operand(0));
    const std::string name = arguments.Text("/v").value_or("");
    const bool isValue = arguments.Has("/v") || arguments.Has("/ve");
    const bool isAllValues = arguments.Has("/va");
    if (!isValue && !isAllValues && key.path.empty())
        throw Failure{"A root key cannot be deleted."};

    const std::string question = isValue       ? "Permanently delete the registry value " + ShownName(name)
                                 : isAllValues ? "Delete all values under the registry key " + key.FullName()
                                               : "Permanently delete the registry key " + key.FullName();
    if (isValue ? !HasValue(key, name) : !ReadKey(key))
        throw NotFound();
    if (!arguments.Has("/f") && !Confirm(console, question + ' '))
        return Success;
    KeyName place = PlaceOf(key);
    if (isValue && !HasValue(place, name)) // of HKEY_CLASSES_ROOT the machine's value shows
        place.root = HKEY_LOCAL_MACHINE;
    const auto edit = [&](Key& hive) -> LSTATUS
    {
        Key* const found = hive.Find(place.path);
        if (!found || (isValue && !found->DeleteValue(name)))
            return ERROR_FILE_NOT_FOUND;
        while (isAllValues && !found->Values().empty())
            found->DeleteValue(std::string{found->Values().begin()->second.name});
        if (!isValue && !isAllValues)
            hive.Delete(place.path);
        return ERROR_SUCCESS;
    };
    ChangeHive(place.root, edit);
    console.out << Completed;
    return Success;
}
} // namespace FraxoReg
