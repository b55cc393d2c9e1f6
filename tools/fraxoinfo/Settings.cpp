#include "Doctor.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <set>

#include "CoreUtilities.h"
#include "DirectoryConfig.h"
#include "Features.h"
#include "IniReader.h"
#include "RegistryHelper.h"
#include "System.h"
#include "Terminal.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
std::string Lower(std::string text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// The names that one of the two enumerating functions of the system gives.
template<class Enumerate>
std::vector<std::string> Names(HKEY root, const std::string& path, const Enumerate& enumerate)
{
    std::vector<std::string> names;
    const RegistryKey key = OpenForReading(root, path);
    std::array<char, 16384> name; // the longest name of a value, with its NUL
    for (DWORD index = 0, size = name.size(); key && enumerate(key.get(), index, name.data(), &size) == ERROR_SUCCESS;
         ++index, size = name.size())
        names.emplace_back(name.data(), size);
    return names;
}

std::vector<std::string> SubKeys(HKEY root, const std::string& path)
{
    return Names(root, path,
                 [](HKEY key, DWORD index, char* name, DWORD* size)
                 { return ::RegEnumKeyExA(key, index, name, size, nullptr, nullptr, nullptr, nullptr); });
}

std::vector<std::string> ValueNames(HKEY root, const std::string& path)
{
    return Names(root, path,
                 [](HKEY key, DWORD index, char* name, DWORD* size)
                 { return ::RegEnumValueA(key, index, name, size, nullptr, nullptr, nullptr, nullptr); });
}

/// The keys that hold a value of each name, for all releases of the product in all spellings of its key. By the name in
/// small letters.
using StoredValues = std::map<std::string, std::vector<std::string>>;

void CollectValues(StoredValues& values, HKEY root, const std::string& path, int levels)
{
    for (const std::string& name : ValueNames(root, path))
        values[Lower(name)].push_back(PlaceOf(root, path));
    for (const std::string& subKey : levels == 0 ? std::vector<std::string>{} : SubKeys(root, path))
        CollectValues(values, root, path + '\\' + subKey, levels - 1);
}

StoredValues CollectValues()
{
    StoredValues values;
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
    {
        for (const std::string& vendor : SubKeys(root, "SOFTWARE"))
        {
            const std::string vendorKey = "SOFTWARE\\" + vendor;
            if (!Lower(vendor).starts_with("quenlor"))
                continue;
            for (const std::string& product : SubKeys(root, vendorKey))
            {
                if (Lower(product).starts_with("fraxo"))
                    CollectValues(values, root, vendorKey + '\\' + product, 2);
            }
        }
    }
    CollectValues(values, HKEY_CLASSES_ROOT, VersionConfig::GetProductKey().ToStdString(), 2);
    return values;
}

std::string Variable(const std::string& name)
{
    return GetEnvironmentVariableValue(name);
}

/// What is nearest to a name that nothing has, for the end of a sentence.
std::string Suggestion(const std::string& name)
{
    const auto nearest = NearestNames(name, {std::begin(FeatureFlags), std::end(FeatureFlags)});
    return nearest.empty() ? "\"fraxoinfo features\" lists those there are." : "Is " + nearest.front() + " meant?";
}
} // namespace

void ExamineStoredSettings(std::vector<Finding>& findings, const std::vector<Answer>& answers)
{
    const StoredValues stored = CollectValues();
    const std::string release = Lower("\\" + VersionConfig::GetVersionStamp().ToStdString() + "\\");
    std::set<std::string> seen;
    std::vector<std::string> unreadable;                                  // mostly for one reason
    std::map<std::pair<std::string, std::string>, std::string> elsewhere; // names, by the key that has and that should
    for (const Answer& answer : answers)
    {
        for (const Source& source : answer.trace)
        {
            if (source.kind != Source::Kind::RegistryValue || source.held || !seen.insert(source.place).second)
                continue;
            if (source.problem == Source::Unreadable)
                unreadable.push_back(source.place);
            else if (!source.problem.empty())
                findings.push_back({source.place + " is not used: " + source.problem + ".",
                                    "Store it again with its program, or correct the value."});
            const std::size_t end = source.place.rfind('\\');
            const std::string key = source.place.substr(0, end);
            const std::string name = source.place.substr(end + 1);
            const auto found = stored.find(Lower(name));
            if (!source.problem.empty() || Lower(source.place).find(release) == std::string::npos ||
                found == stored.end())
                continue;
            std::string& names = elsewhere[{found->second.front(), key}];
            names += (names.empty() ? "" : ", ") + name;
        }
    }
    if (!unreadable.empty())
        findings.push_back(
            {unreadable.front() + " cannot be read" +
                 (unreadable.size() == 1 ? "" : ", nor can " + std::to_string(unreadable.size() - 1) + " others") + ".",
             "Check that this user may read the registry there."});
    for (const auto& [keys, names] : elsewhere)
        findings.push_back({"Stored in " + keys.first + ", where this release does not look: " + names + ".",
                            "If they are meant for this release, store them in " + keys.second + "."});
}

void ExamineVariables(std::vector<Finding>& findings, const std::vector<Finding>& missing)
{
    if (const std::string root = Variable("FRAXO_PRO_ROOT_DIRECTORY"); !root.empty())
    {
        const std::string record = InstallationRecord("RootDir").ToStdString();
        const bool applies = DirectoryConfig::IsRunningFromOutput();
        const std::string effect =
            applies ? " replaces the recorded root " + (record.empty() ? "(none)" : record) +
                          " and both data folders, since this program is in it. Files missing there: " +
                          std::to_string(missing.size()) + "."
                    : " replaces the recorded root for programs in that folder; this program is not in it.";
        findings.push_back({"FRAXO_PRO_ROOT_DIRECTORY=" + root + effect,
                            "Remove the variable, unless this is a developer's machine."});
    }
    if (const std::string language = Variable("FRAXO_PRO_LANGUAGE"); !language.empty())
    {
        std::string hidden;
        for (const LanguageChoice& place : LanguageChoices)
        {
            const std::string choice =
                RegistryHelper::GetStringValue(place.root, LanguageChoiceKey(), place.name, "none").ToStdString();
            hidden += (hidden.empty() ? "the " : ", the ") + std::string{place.whose} + " language: " + choice;
        }
        findings.push_back(
            {"FRAXO_PRO_LANGUAGE=" + language + " sets the language, and hides what was chosen (" + hidden + ").",
             "Remove the variable to use the language that was chosen."});
    }
    if (const std::string sections = Variable("FRAXO_PRO_SECTIONS_DIRECTORY"); !sections.empty())
        findings.push_back({"FRAXO_PRO_SECTIONS_DIRECTORY=" + sections + " replaces the installed section database.",
                            "Remove the variable to use the installed one."});
}

void ExamineFeatures(std::vector<Finding>& findings)
{
    constexpr std::string_view section = "DEV_FEATURES";
    const std::string file = ProductIniToRead();
    IniReader reader;
    reader.LoadFile(file);
    for (const Feature& feature : ReadFeatures())
    {
        if (!feature.failure.empty())
            findings.push_back({"The feature switch " + feature.flag + " has an unusable value in the " +
                                    feature.source + ": a program that asks for it fails.",
                                "Set it to 0 or 1 there, or remove it."});
        else if (!Variable(feature.flag).empty())
            findings.push_back({"The variable " + feature.flag + "=" + Variable(feature.flag) +
                                    " overrides the INI file, which says " +
                                    reader.GetStringValue(std::string{section}, feature.flag, "nothing") + ".",
                                "Remove the variable to use the INI file."});
    }
    const auto isKnown = [](const std::string& name) { return std::ranges::count(FeatureFlags, name) != 0; };
    for (const std::string& name : EnvironmentNames())
    {
        if (name.starts_with("FPRO_FEATURE_") && !isKnown(name))
            findings.push_back({"The variable " + name + " names no feature.", Suggestion(name)});
    }
    std::vector<IniKeyValue> pairs;
    reader.GetKeyValuePairListBySection(std::string{section}, pairs);
    for (const IniKeyValue& pair : pairs)
    {
        if (!isKnown(pair.Key))
            findings.push_back(
                {"\"" + pair.Key + "\" in section " + std::string{section} + " of " + file + " names no feature.",
                 Suggestion(pair.Key)});
    }
}
} // namespace FraxoInfo
