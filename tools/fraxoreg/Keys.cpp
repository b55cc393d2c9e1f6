#include "Keys.h"

#include <algorithm>

#include "Operations.h"
#include "registry/Hives.h"
#include "registry/RegistryPath.h"

namespace FraxoReg
{
namespace
{
namespace Registry = Quenlor::StandIn::Registry;

HKEY RootOf(std::string_view name)
{
    return EqualIgnoringCase(name, "HKLM")   ? HKEY_LOCAL_MACHINE
           : EqualIgnoringCase(name, "HKCU") ? HKEY_CURRENT_USER
           : EqualIgnoringCase(name, "HKCR") ? HKEY_CLASSES_ROOT
                                             : Registry::RootOfName(name);
}

KeyName InClassesOf(HKEY root, std::string_view path)
{
    KeyName name{root, R"(Software\Classes)"};
    Registry::AppendToPath(name.path, path);
    return name;
}

/// Throws unless a call for the hive succeeded.
void Require(HKEY root, LSTATUS status)
{
    const std::string file = Registry::HivePath(root);
    if (status == ERROR_SUCCESS)
        return;
    if (status == ERROR_FILE_NOT_FOUND)
        throw NotFound();
    if (status == ERROR_ACCESS_DENIED)
        throw Failure{"Access is denied.\n" +
                      (file.empty() ? "This part of the registry has no folder: set HOME or QUENLOR_REGISTRY_DIR."
                                    : "This user has no permission for " + file + '.')};
    throw Failure{"Error accessing the registry.\n" + file +
                  (status == ERROR_REGISTRY_IO_FAILED
                       ? " cannot be read or written. The disk may be full, or it is not a file."
                   : status == ERROR_BADDB
                       ? " is not a registry file.\nIts first line has to be: Windows Registry Editor Version 5.00"
                       : " gave the error " + std::to_string(status) + '.')};
}

void CopyMissing(Key& target, const Key& source)
{
    for (const auto& [folded, value] : source.Values())
    {
        if (!target.FindValue(value.name))
            target.SetValue(value.name, value.type, value.data);
    }
    for (const auto& [folded, subKey] : source.SubKeys())
        CopyMissing(target.Create(subKey.Name()), subKey);
}
} // namespace

std::string KeyName::FullName() const
{
    std::string name{Registry::RootName(root)};
    Registry::AppendToPath(name, path);
    return name;
}

KeyName ParseKeyName(std::string_view text)
{
    const std::size_t rootEnd = std::min(text.find('\\'), text.size());
    KeyName name{RootOf(text.substr(0, rootEnd)), {}};
    Registry::AppendToPath(name.path, text.substr(rootEnd));
    if (name.root && Registry::IsLegalKeyPath(InClassesOf(name.root, name.path).path))
        return name;

    std::string message = "Invalid key name '" + std::string{text} + "'.";
    if (text.starts_with(R"(\\)"))
        message += "\nThe registry of another machine cannot be reached.";
    else if (!name.root && RootOf(text.substr(0, text.find('/'))))
        message += "\nA key name has backslashes between its levels.";
    else if (!name.root && rootEnd == text.size() && (RootOf(text.substr(0, 4)) || text.starts_with("HKEY_")))
        message += "\nA shell removes backslashes unless the name is in quotes: 'HKCU\\Software'.";
    throw WrongUse{message};
}

KeyName PlaceOf(const KeyName& name)
{
    if (name.root != HKEY_CLASSES_ROOT)
        return name;
    KeyName inUser = InClassesOf(HKEY_CURRENT_USER, name.path);
    return ReadKey(inUser) ? inUser : InClassesOf(HKEY_LOCAL_MACHINE, name.path);
}

bool ReadKey(const KeyName& name, const std::function<void(const Key&)>& read)
{
    bool exists = name.root == HKEY_CLASSES_ROOT && name.path.empty();
    const auto readFound = [&](const Key& hive)
    {
        const Key* const key = hive.Find(name.path);
        exists = key != nullptr;
        if (key)
            read(*key);
    };
    if (name.root != HKEY_CLASSES_ROOT)
    {
        Require(name.root, Registry::ReadHive(name.root, readFound));
        return exists;
    }
    Key merged;
    for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
        exists |= ReadKey(InClassesOf(root, name.path), [&](const Key& key) { CopyMissing(merged, key); });
    if (exists)
        read(merged);
    return exists;
}

void ChangeHive(HKEY root, const std::function<LSTATUS(Key&)>& edit)
{
    Require(root, Registry::ChangeHive(root, edit));
}
} // namespace FraxoReg
