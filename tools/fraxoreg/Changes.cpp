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

LSTATUS DeleteValue(const KeyName& name, const std::string& valueName)
{
    HKEY key = nullptr;
    LSTATUS status = ::RegOpenKeyExA(name.root, name.path.c_str(), 0, KEY_SET_VALUE, &key);
    if (status == ERROR_SUCCESS)
        status = ::RegDeleteValueA(key, valueName.c_str());
    ::RegCloseKey(key);
    return status;
}

LSTATUS DeleteAllValues(Key* key)
{
    while (key && !key->Values().empty())
        key->DeleteValue(std::string{key->Values().begin()->second.name});
    return key ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
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
    if (isValue ? !HasValue(key, name) : !ReadKey(key, [](const Key&) {}))
        throw NotFound();
    if (!arguments.Has("/f") && !Confirm(console, question + ' '))
        return Success;
    if (isValue)
        Require(key, DeleteValue(key, name));
    else if (isAllValues)
    {
        const KeyName place = PlaceOf(key);
        ChangeHive(place.root, [&](Key& hive) { return DeleteAllValues(hive.Find(place.path)); });
    }
    else
        Require(key, ::RegDeleteTreeA(key.root, key.path.c_str()));
    console.out << Completed;
    return Success;
}
} // namespace FraxoReg
