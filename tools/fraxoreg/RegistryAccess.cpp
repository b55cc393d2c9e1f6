#include "RegistryAccess.h"

#include <algorithm>

#include "Arguments.h"
#include "Failure.h"
#include "registry/Hives.h"
#include "registry/RegistryPath.h"

namespace FraxoReg
{
namespace
{
namespace Registry = Quenlor::StandIn::Registry;

constexpr LSTATUS NotChanged = ERROR_NO_MORE_ITEMS; // for an edit that changes nothing; no hive answers with it

HKEY RootOf(std::string_view name)
{
    constexpr std::string_view longStart = "HKEY_";
    if (name.size() > longStart.size() && EqualIgnoringCase(name.substr(0, longStart.size()), longStart))
        return Registry::RootOfName(name);
    if (EqualIgnoringCase(name, "HKLM"))
        return HKEY_LOCAL_MACHINE;
    if (EqualIgnoringCase(name, "HKCU"))
        return HKEY_CURRENT_USER;
    return EqualIgnoringCase(name, "HKCR") ? HKEY_CLASSES_ROOT : nullptr;
}

std::string Explain(HKEY root, LSTATUS status)
{
    const std::string file = Registry::HivePath(root);
    switch (status)
    {
    case ERROR_FILE_NOT_FOUND:
        return NotFound().what();
    case ERROR_ACCESS_DENIED:
        return file.empty() ? "Access is denied.\nThere is no folder for this part of the registry: set HOME or "
                              "QUENLOR_REGISTRY_DIR."
                            : "Access is denied.\nThis user has no permission for " + file + '.';
    case ERROR_REGISTRY_IO_FAILED:
        return "Error accessing the registry.\n" + file +
               " cannot be read or written. The disk may be full, or it is no file.";
    default:
        return "Error accessing the registry.\n" + file + " gave the error " + std::to_string(status) + '.';
    }
}

void Require(HKEY root, LSTATUS status)
{
    if (status != ERROR_SUCCESS)
        throw Failure{Explain(root, status)};
}

void Read(HKEY root, const std::function<void(const Key&)>& read)
{
    Require(root, Registry::ReadHive(root, read));
}

/// Whether `holds` says so of the key where it is kept. `name` is no key of HKEY_CLASSES_ROOT.
template<typename Predicate>
bool Holds(const KeyName& name, Predicate holds)
{
    bool result = false;
    Read(name.root,
         [&](const Key& hive)
         {
        const Key* const key = hive.Find(name.path);
        result = key && holds(*key);
    });
    return result;
}

/// The place in the user's classes if `holds` says so of the key there, else the one in the machine's.
template<typename Predicate>
KeyName FindPlace(const KeyName& name, Predicate holds)
{
    if (name.root != HKEY_CLASSES_ROOT)
        return name;
    const KeyName userPlace = InClassesOf(HKEY_CURRENT_USER, name.path);
    return Holds(userPlace, holds) ? userPlace : InClassesOf(HKEY_LOCAL_MACHINE, name.path);
}

constexpr auto Exists = [](const Key&) { return true; };

auto HasValueNamed(std::string_view name)
{
    return [name](const Key& key) { return key.FindValue(name) != nullptr; };
}

void ReadMerged(const KeyName& name, const std::function<void(const Key&)>& read)
{
    Key merged;
    bool exists = name.path.empty();
    for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
    {
        const KeyName place = InClassesOf(root, name.path);
        Read(root,
             [&](const Key& hive)
             {
            const Key* const key = hive.Find(place.path);
            exists = exists || key;
            if (key)
                CopyMissing(merged, *key);
        });
    }
    if (!exists)
        throw NotFound();
    read(merged);
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
    if (text.starts_with(R"(\\)"))
        throw WrongUse{"Invalid key name.", "The registry of another machine cannot be reached."};
    const std::size_t rootEnd = std::min(text.find('\\'), text.size());
    KeyName name{RootOf(text.substr(0, rootEnd)), {}};
    Registry::AppendToPath(name.path, text.substr(rootEnd));
    if (!name.root && rootEnd == text.size())
        throw WrongUse{"Invalid key name.",
                       R"(A shell takes backslashes away, unless the name is in quotes: 'HKCU\Software'.)"};
    if (!name.root || !Registry::IsLegalKeyPath(InClassesOf(name.root, name.path).path))
        throw WrongUse{"Invalid key name."};
    return name;
}

void ReadKey(const KeyName& name, const std::function<void(const Key&)>& read)
{
    if (name.root == HKEY_CLASSES_ROOT)
        return ReadMerged(name, read);
    bool exists = false;
    Read(name.root,
         [&](const Key& hive)
         {
        const Key* const key = hive.Find(name.path);
        exists = key;
        if (key)
            read(*key);
    });
    if (!exists)
        throw NotFound();
}

KeyName InClassesOf(HKEY classes, std::string_view path)
{
    KeyName name{classes, R"(Software\Classes)"};
    Registry::AppendToPath(name.path, path);
    return name;
}

bool HasKey(const KeyName& name)
{
    return Holds(PlaceOf(name), Exists);
}

bool HasValue(const KeyName& name, std::string_view valueName)
{
    return Holds(PlaceOfValue(name, valueName), HasValueNamed(valueName));
}

KeyName PlaceOf(const KeyName& name)
{
    return FindPlace(name, Exists);
}

KeyName PlaceOfValue(const KeyName& name, std::string_view valueName)
{
    return FindPlace(name, HasValueNamed(valueName));
}

void ChangeHive(HKEY root, const std::function<LSTATUS(Key&)>& edit)
{
    Require(root, Registry::ChangeHive(root, edit));
}

void RequireWritable(HKEY root)
{
    const LSTATUS status = Registry::ChangeHive(root, [](Key&) { return NotChanged; });
    if (status != NotChanged)
        Require(root, status);
}

void CopyMissing(Key& target, const Key& source)
{
    for (const auto& value : source.Values())
    {
        if (!target.FindValue(value->name))
            target.SetValue(value->name, value->type, value->data);
    }
    for (const auto& subKey : source.SubKeys())
        CopyMissing(target.Create(subKey->Name()), *subKey);
}
} // namespace FraxoReg
