#include "Doctor.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>

#include <Quenlor/QnFileName.h>

#include "CoreUtilities.h"
#include "DirectoryConfig.h"
#include "Features.h"
#include "IniLines.h"
#include "IniReader.h"
#include "LanguageHelper.h"
#include "LogSetup.h"
#include "RegistryHelper.h"
#include "System.h"
#include "common/StoredText.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;
using Quenlor::QnFileName;
using Quenlor::Utf8String;
using Tools::Lower;

namespace FraxoInfo
{
namespace
{
constexpr char Repair[] = "Repair the installation.";

using Findings = std::vector<Finding>;

/// @return whether there is a root to look below
bool ExamineRoot(Findings& findings)
{
    const Utf8String record = VersionConfig::GetVersionStamp();
    const auto recordedIn = [&](HKEY hive)
    { return RegistryHelper::GetStringValue(hive, R"(Software\Classes\)" + record, "RootDir", {}); };
    const Utf8String users = recordedIn(HKEY_CURRENT_USER), machines = recordedIn(HKEY_LOCAL_MACHINE);
    if (!users.empty() && !machines.empty())
        Add(findings, "This user's registry hides the machine's installation record: the root is {}, not {}.", users,
            machines)
            .remedy = fmt::format(R"(Delete HKEY_CURRENT_USER\Software\Classes\{}.)", record);
    const Utf8String root = DirectoryConfig::GetFRAXOProRoot();
    if (root.empty())
        Add(findings, R"(No installation is recorded: "RootDir" of HKEY_CLASSES_ROOT\{} is missing or empty.)", record)
            .remedy = "Install the product, or repair its installation.";
    else if (!QnFileName{root}.IsAbsolutePath())
        Add(findings,
            "The installation root is not an absolute path: {}. What is below it depends on the current folder.", root)
            .remedy = R"(Correct "RootDir" in the installation record, or FRAXO_PRO_ROOT_DIRECTORY if it is set.)";
    else if (!Exists(QnFileName{root}))
        Add(findings, "The installation root does not exist: {}", root).remedy =
            R"(Repair the installation, or correct "RootDir" in its record.)";
    else
        return true;
    return false;
}

/// @return whether the shell knows the folder
bool ExamineShellFolder(Findings& findings, Utf8String (*directory)(), const char* variable)
try
{
    directory();
    return true;
}
catch (const std::runtime_error& failure)
{
    Add(findings, "{}.", failure.what()).remedy =
        fmt::format("Check that it exists, and that its path is absolute and at most 259 bytes long. On Linux the "
                    "variable {} can name it.",
                    variable);
    return false;
}

/// What a file holds; nothing when it cannot be read.
std::optional<std::string> Contents(const Utf8String& path)
try
{
    return ReadWholeFile(QnFileName{path}.ToNativePath());
}
catch (const std::runtime_error&)
{
    return std::nullopt;
}

/// What the reader cannot make sense of in a copy that differs from its default.
void ExamineIniCopy(Findings& findings, const UserFile& file)
{
    constexpr char remedy[] = "Correct it, or move the file away: it is made again from the installed default.";
    const auto lines = ReadIniLines(QnFileName{file.path}.ToNativePath());
    const auto countSections = [](const Utf8String& path)
    {
        IniReader reader;
        std::vector<std::string> names;
        reader.LoadFile(path.ToStdString());
        return reader.GetSectionList(names);
    };
    // The first line only: what follows is often of the same cause, and `fraxoinfo ini` shows it.
    if (const auto damage = std::ranges::find(lines, true, &IniLine::isDamage); damage != lines.end())
        Add(findings, "Line {} of this user's file {}: {}.", damage->number, file.path, damage->surprise).remedy =
            remedy;
    else if (countSections(file.path) == 0 && countSections(file.installedDefault) != 0)
        Add(findings, "This user's file has no sections, unlike its default: {}", file.path).remedy = remedy;
}

/// Empty or unreadable: a program would find nothing where the installed default has something.
void ExamineUserCopy(Findings& findings, const UserFile& file)
try
{
    const std::string copy = ReadWholeFile(QnFileName{file.path}.ToNativePath());
    if (copy == Contents(file.installedDefault))
        return;
    if (copy.empty())
        Add(findings, "This user's file is empty: {}", file.path).remedy =
            "Delete it: it is made again from the installed default when it is next needed.";
    else if (Lower(file.path).ends_with(".ini"))
        ExamineIniCopy(findings, file);
}
catch (const std::runtime_error&)
{
    Add(findings, "This user's file cannot be read: {}", file.path).remedy =
        "Check that it is a file and that this user may read it. As a last resort move it away: it is made again, "
        "without the user's changes.";
}

/// Each default that a getter would copy. Without a root, those below it are not reported one by one.
void ExamineUserFiles(Findings& findings, Findings& missing, bool hasRoot)
{
    const std::string machineData = DirectoryConfig::GetProgramDataDirectory().ToStdString();
    for (const Operation& operation : Catalogue())
    {
        if (!operation.userFile)
            continue;
        const UserFile file = operation.userFile();
        if (Exists(QnFileName{file.path}))
            ExamineUserCopy(findings, file);
        const bool canBeThere = hasRoot || file.installedDefault.ToStdString().starts_with(machineData);
        if (canBeThere && !Exists(QnFileName{file.installedDefault}))
            Add(missing, "The installed default that {} copies is missing: {}", operation.name, file.installedDefault)
                .remedy = Repair;
    }
}

void ExamineLanguages(Findings& findings, Findings& missing, bool hasRoot)
{
    const std::set<Utf8String> installed = LanguageHelper::GetInstalledLanguages();
    for (const LanguageChoice& place : LanguageChoices)
    {
        const Utf8String choice = RegistryHelper::GetStringValue(place.root, LanguageChoiceKey(), place.name, {});
        if (ForcedLanguage().empty() && !choice.empty() && !installed.contains(choice))
            Add(findings, R"(The {} language "{}" is not installed, so it is ignored.)", place.whose, choice).remedy =
                "Install it, or choose an installed one. Letter case matters.";
    }
    for (const Utf8String& code : installed)
    {
        const Utf8String directory = LanguageHelper::GetCurrentLanguageDirectory(code);
        if (hasRoot && !Exists(QnFileName{directory}))
            Add(missing, R"(The language "{}" has no resource folder: {})", code, directory).remedy = Repair;
    }
}

void ExamineLogging(Findings& findings, bool canBeThere)
{
    const LogSetup setup = ExamineLog(ThisProgram(), false);
    const Utf8String file = setup.choice.File().GetNameUtf8();
    if (!setup.exists && canBeThere)
        Add(findings, "The log configuration is missing: {}.", file).remedy =
            "Repair the installation, or write one. Until then only warnings and worse are logged, to standard error.";
    if (!setup.faults.empty())
        Add(findings, "The log configuration is faulty: {}", setup.faults.front()).remedy =
            R"(Correct it there; "fraxoinfo log" shows all faults.)";
    else if (setup.isSilent)
        Add(findings, "The log configuration {} sends no record anywhere.", file).remedy =
            R"(Give the root a level and an appender there; "fraxoinfo log" shows what applies.)";
    for (const std::string& log : setup.notWritable)
        Add(findings, "The log file cannot be written: {}", log).remedy =
            "Check that its folder is a folder, and that this user may write to it.";
}

/// The names that RegEnumKeyExA or RegEnumValueA gives.
template<class Enumerate>
std::vector<std::string> Names(HKEY root, const std::string& path, Enumerate enumerate)
{
    std::vector<std::string> names;
    const RegistryKey key = OpenForReading(root, path);
    std::array<char, 16384> name; // the longest name of a value, with its NUL
    const auto read = [&](DWORD& size)
    {
        return enumerate(key.get(), static_cast<DWORD>(names.size()), name.data(), &size, nullptr, nullptr, nullptr,
                         nullptr);
    };
    for (DWORD size = name.size(); key && read(size) == ERROR_SUCCESS; size = name.size())
        names.emplace_back(name.data(), size);
    return names;
}

/// Whether a key's name is the number of a release before this one.
bool IsOlderRelease(const std::string& name)
{
    return name.find_first_not_of("0123456789.") == std::string::npos &&
           VersionConfig::CompareVersions(name, VersionConfig::GetReleaseNumber()) < 0;
}

/// A key that holds a value of each name, by the name in small letters.
using StoredValues = std::map<std::string, std::string>;

/// @param starts what the keys of each level below start with, in small letters
void CollectValues(StoredValues& values, HKEY root, const std::string& path, std::span<const char* const> starts)
{
    for (const std::string& name : Names(root, path, ::RegEnumValueA))
        values.emplace(Lower(name), PlaceOf(root, path));
    for (const std::string& key : starts.empty() ? std::vector<std::string>{} : Names(root, path, ::RegEnumKeyExA))
    {
        if (Lower(key).starts_with(starts.front()) && !IsOlderRelease(key)) // an upgrade leaves those settings behind
            CollectValues(values, root, path + '\\' + key, starts.subspan(1));
    }
}

/// What an unknown feature may have been meant to be.
std::string Suggestion(const std::string& name)
{
    const auto nearest = NearestNames(name, {std::begin(FeatureFlags), std::end(FeatureFlags)});
    return nearest.empty() ? R"("fraxoinfo features" lists all features.)" : "Did you mean " + nearest.front() + "?";
}

/// Settings that the library could not use for these answers: of another type, unreadable, or stored where this release
/// does not look.
void ExamineStoredSettings(Findings& findings, const std::vector<Answer>& answers)
{
    constexpr const char* levels[] = {"quenlor", "fraxo", "", ""}; // in whatever spelling of the vendor and the product
    StoredValues stored;
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
        CollectValues(stored, root, "SOFTWARE", levels);
    CollectValues(stored, HKEY_CLASSES_ROOT, VersionConfig::GetProductKey().ToStdString(), std::span{levels}.last(2));
    const std::string release = Lower(fmt::format(R"(\{}\)", VersionConfig::GetVersionStamp()));
    std::set<std::string> seen;
    std::vector<std::string> unreadable;                                               // mostly for one reason
    std::map<std::pair<std::string, std::string>, std::vector<std::string>> elsewhere; // by the keys with and without
    for (const Answer& answer : answers)
    {
        for (const Source& source : answer.trace)
        {
            if (source.kind != Source::Kind::RegistryValue || source.held || !seen.insert(source.place).second)
                continue;
            const std::size_t end = source.place.rfind('\\');
            const std::string name = source.place.substr(end + 1);
            const auto found = stored.find(Lower(name));
            if (source.problem == Source::Unreadable)
                unreadable.push_back(source.place);
            else if (!source.problem.empty())
                Add(findings, "{} is not used: {}.", source.place, source.problem).remedy =
                    "Store it again with its program, or correct the value.";
            else if (found != stored.end() && Lower(source.place).find(release) != std::string::npos)
                elsewhere[{found->second, source.place.substr(0, end)}].push_back(name);
        }
    }
    if (!unreadable.empty())
        Add(findings, "Settings cannot be read: {}. The first is {}.", unreadable.size(), unreadable.front()).remedy =
            "Check that this user may read the registry there.";
    for (const auto& [keys, names] : elsewhere)
        Add(findings, "Stored in {}, where this release does not look: {}.", keys.first, fmt::join(names, ", "))
            .remedy = fmt::format("If they are meant for this release, store them in {}.", keys.second);
}

/// Variables that override what is installed.
/// @param missing how many files of the installation are missing, which a variable may explain
void ExamineVariables(Findings& findings, std::size_t missing)
{
    constexpr auto value = GetEnvironmentVariableValue;
    if (const std::string root = value("FRAXO_PRO_ROOT_DIRECTORY"); !root.empty())
    {
        const Utf8String record = InstallationRecord("RootDir");
        Finding& finding = Add(findings, "FRAXO_PRO_ROOT_DIRECTORY={} replaces the recorded root", root);
        finding.problem +=
            !DirectoryConfig::IsRunningFromOutput()
                ? " for programs in that folder; this program is not in it."
                : fmt::format(" {} and both data folders, because this program is in it. Files missing there: {}.",
                              record.empty() ? "(none)" : record, missing);
        finding.remedy = "Remove the variable, unless this is a developer's machine.";
    }
    if (const std::string language = value("FRAXO_PRO_LANGUAGE"); !language.empty())
    {
        std::vector<std::string> hidden;
        for (const LanguageChoice& place : LanguageChoices)
            hidden.push_back(
                fmt::format("the {} language: {}", place.whose,
                            RegistryHelper::GetStringValue(place.root, LanguageChoiceKey(), place.name, "none")));
        Add(findings, "FRAXO_PRO_LANGUAGE={} overrides the chosen language ({}).", language, fmt::join(hidden, ", "))
            .remedy = "Remove the variable to use the language that was chosen.";
    }
    if (const std::string sections = value("FRAXO_PRO_SECTIONS_DIRECTORY"); !sections.empty())
        Add(findings, "FRAXO_PRO_SECTIONS_DIRECTORY={} replaces the installed section database.", sections).remedy =
            "Remove the variable to use the installed one.";
}

/// Feature switches that are unusable, overridden or unknown.
void ExamineFeatures(Findings& findings)
{
    constexpr char section[] = "DEV_FEATURES";
    const std::string file = ProductIniToRead();
    IniReader reader;
    reader.LoadFile(file);
    for (const Feature& feature : ReadFeatures())
    {
        const std::string variable = GetEnvironmentVariableValue(feature.flag);
        if (!feature.failure.empty())
            Add(findings, "The feature switch {} has an unusable value in the {}: a program that asks for it fails.",
                feature.flag, feature.source)
                .remedy = "Set it to 0 or 1 there, or remove it.";
        else if (!variable.empty())
            Add(findings, "The variable {}={} overrides the INI file, which says {}.", feature.flag, variable,
                reader.GetStringValue(section, feature.flag, "nothing"))
                .remedy = "Remove the variable to use the INI file.";
    }
    const auto isUnknown = [](const std::string& name) { return std::ranges::count(FeatureFlags, name) == 0; };
    for (const std::string& name : EnvironmentNames())
    {
        if (name.starts_with("FPRO_FEATURE_") && isUnknown(name))
            Add(findings, "The variable {} does not belong to a feature.", name).remedy = Suggestion(name);
    }
    std::vector<IniKeyValue> pairs;
    reader.GetKeyValuePairListBySection(section, pairs);
    for (const IniKeyValue& pair : pairs)
    {
        if (isUnknown(pair.Key))
            Add(findings, R"("{}" in section {} of {} is not a feature.)", pair.Key, section, file).remedy =
                Suggestion(pair.Key);
    }
}
} // namespace

Findings Examine()
{
    Findings findings = ExamineRegistryFiles(); // first: a fault there may cause all the others
    Findings missing;
    const bool hasRoot = ExamineRoot(findings);
    const bool hasMachineData = ExamineShellFolder(findings, DirectoryConfig::GetProgramDataDirectory, "PROGRAMDATA");
    const bool hasUserData = ExamineShellFolder(findings, DirectoryConfig::GetLocalAppDataDirectory, "LOCALAPPDATA");
    if (hasMachineData && hasUserData)
        ExamineUserFiles(findings, missing, hasRoot);
    if (const auto folder = hasUserData ? DirectoryConfig::GetLocalAppDataDirectory() : Utf8String{};
        hasUserData && !CanWriteOrMake(QnFileName{folder}.ToNativePath() / "file"))
        Add(findings, "This user cannot write to the data folder {}.", folder).remedy =
            "Make the folder writable for this user: files are copied to it from their defaults.";
    ExamineLanguages(findings, missing, hasRoot);
    ExamineVariables(findings, missing.size());
    if (!DirectoryConfig::IsRunningFromOutput()) // otherwise the variable is the cause
        findings.insert(findings.end(), missing.begin(), missing.end());
    ExamineStoredSettings(findings, AskForEverything(false));
    ExamineFeatures(findings);
    ExamineLogging(findings, hasMachineData && !DirectoryConfig::IsRunningFromOutput());
    return findings;
}

bool CanWriteOrMake(const std::filesystem::path& file)
{
    std::error_code error;
    if (std::filesystem::exists(file, error))
        return !std::filesystem::is_directory(file, error) && CanWrite(file);
    std::filesystem::path folder = file.parent_path();
    while (!std::filesystem::exists(folder, error) && folder != folder.parent_path())
        folder = folder.parent_path();
    return std::filesystem::is_directory(folder, error) && CanWrite(folder);
}

std::string Format(const Findings& findings)
{
    if (findings.empty())
        return Coloured("Healthy:", Colour::Good) + " nothing needs attention.\n";
    std::string text;
    for (const Finding& finding : findings)
        text += fmt::format("{} {}\n  {}\n", Coloured("!", Colour::Bad), Printable(finding.problem),
                            Printable(finding.remedy));
    return text + (findings.size() == 1 ? "\n1 problem needs attention.\n"
                                        : fmt::format("\n{} problems need attention.\n", findings.size()));
}
} // namespace FraxoInfo
