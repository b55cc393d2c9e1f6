#include "LanguageHelper.h"

#include <mutex>
#include <set>
#include <sstream>
#include <string>

#include <Platform/Win32.h>

#include "DirectoryConfig.h"
#include "RegistryHelper.h"
#include "VersionConfig.h"
#include "language/LanguageChoice.h"
#include "registry/RegistryKey.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
constexpr char FallBack[] = "en";

/// What the process has found out; each part is empty until then and never changes afterwards.
struct Cache
{
    std::mutex mutex;
    Utf8String current;
    std::set<Utf8String> installed;
};

Cache& TheCache()
{
    // Never destroyed: an application's own static objects may still ask while they are.
    static Cache& cache = *new Cache;
    return cache;
}

std::set<Utf8String> RecordedLanguages()
{
    const Utf8String key = VersionConfig::GetVersionStamp() + LanguageSubKey;
    std::set<Utf8String> languages;
    // Each text ends in a NUL, and the list in an empty text if it is well formed.
    std::istringstream list{ReadData(HKEY_CLASSES_ROOT, key, "InstalledLanguages", REG_MULTI_SZ).value_or("")};
    for (std::string code; std::getline(list, code, '\0') && !code.empty();)
        languages.insert(code);
    if (languages.empty())
        languages.insert(FallBack);
    return languages;
}

void NoteRemembered(const char* what, const std::set<Utf8String>& languages)
{
    if (!trace)
        return;
    std::string held;
    for (const Utf8String& code : languages)
        held += code.ToStdString() + '\0';
    trace->push_back({Source::Kind::System, what, held, true});
}

const std::set<Utf8String>& InstalledLanguages(Cache& cache)
{
    if (cache.installed.empty())
    {
        const Utf8String forced = ForcedLanguage();
        cache.installed = forced.empty() ? RecordedLanguages() : std::set{forced};
    }
    else
        NoteRemembered("the installed languages that this process found at first", cache.installed);
    return cache.installed;
}

Utf8String ChosenLanguage(const std::set<Utf8String>& installed)
{
    const auto ask = [&](const LanguageChoice& place)
    {
        const Utf8String choice = RegistryHelper::GetStringValue(place.root, LanguageChoiceKey(), place.name, {});
        return installed.contains(choice) ? choice : Utf8String{};
    };
    const Utf8String chosen = FirstAnswer(LanguageChoices, ask);
    return chosen.empty() ? FallBack : chosen;
}
} // namespace

void ForgetLanguages()
{
    Cache& cache = TheCache();
    const std::lock_guard lock{cache.mutex};
    cache.current = {};
    cache.installed.clear();
}

Utf8String LanguageHelper::GetCurrentLanguage()
{
    Cache& cache = TheCache();
    const std::lock_guard lock{cache.mutex};
    if (cache.current.empty())
    {
        // Looked at here as well: the installed set may have been found before the variable was set.
        cache.current = ForcedLanguage();
        if (cache.current.empty())
        {
            const Attempt restriction; // the installed set only says which choices are good
            const std::set<Utf8String>& installed = InstalledLanguages(cache);
            restriction.PassOver();
            cache.current = ChosenLanguage(installed);
        }
    }
    else
        NoteRemembered("the language that this process chose at first", {cache.current});
    return cache.current;
}

std::set<Utf8String> LanguageHelper::GetInstalledLanguages()
{
    Cache& cache = TheCache();
    const std::lock_guard lock{cache.mutex};
    return InstalledLanguages(cache);
}

void LanguageHelper::SetLanguage(const Utf8String& code)
{
    const LanguageChoice& user = LanguageChoices[0];
    RegistryHelper::SetStringValue(user.root, LanguageChoiceKey(), user.name, code);
}

Utf8String LanguageHelper::GetLanguageDirectory()
{
    return DirectoryConfig::GetFRAXOProRoot() + R"(Resource\Language\)";
}

Utf8String LanguageHelper::GetCurrentLanguageDirectory()
{
    return GetCurrentLanguageDirectory(GetCurrentLanguage());
}

Utf8String LanguageHelper::GetCurrentLanguageDirectory(const Utf8String& code)
{
    return GetLanguageDirectory() + code + R"(\)";
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
