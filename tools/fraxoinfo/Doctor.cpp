#include "Doctor.h"

#include <fstream>
#include <set>
#include <stdexcept>

#include <Quenlor/QnFileName.h>

#include "DirectoryConfig.h"
#include "IniLines.h"
#include "IniReader.h"
#include "LanguageHelper.h"
#include "LogSetup.h"
#include "RegistryHelper.h"
#include "System.h"
#include "Terminal.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;
using Quenlor::QnFileName;
using Quenlor::Utf8String;

namespace FraxoInfo
{
namespace
{
constexpr char Repair[] = "Repair the installation.";

using Findings = std::vector<Finding>;

bool Exists(const Utf8String& path)
{
    return QnFileName::DoesPathExist(QnFileName{path}.GetName());
}

std::string Text(const Utf8String& text)
{
    return text.ToStdString();
}

/// @return whether there is a root to look below
bool ExamineRoot(Findings& findings)
{
    constexpr char classes[] = R"(Software\Classes\)";
    const auto recordedIn = [&](HKEY hive)
    { return RegistryHelper::GetStringValue(hive, classes + VersionConfig::GetVersionStamp(), "RootDir", {}); };
    if (!recordedIn(HKEY_CURRENT_USER).empty() && !recordedIn(HKEY_LOCAL_MACHINE).empty())
        findings.push_back({"This user's classes hide the machine's installation record: the root is " +
                                Text(recordedIn(HKEY_CURRENT_USER)) + ", not " + Text(recordedIn(HKEY_LOCAL_MACHINE)),
                            "Delete HKEY_CURRENT_USER\\" + Text(classes + VersionConfig::GetVersionStamp()) + "."});
    const Utf8String root = DirectoryConfig::GetFRAXOProRoot();
    if (root.empty())
    {
        findings.push_back({"There is no installation record: HKEY_CLASSES_ROOT\\" +
                                Text(VersionConfig::GetVersionStamp()) +
                                " has no text called \"RootDir\", or an empty one.",
                            "Install the product, or repair its installation."});
        return false;
    }
    if (!QnFileName{root}.IsAbsolutePath())
    {
        findings.push_back(
            {"The installation root is not an absolute path: " + Text(root) +
                 ". What is found below it depends on the current folder.",
             "Correct \"RootDir\" in the installation record, or FRAXO_PRO_ROOT_DIRECTORY where it is set."});
        return false;
    }
    if (Exists(root))
        return true;
    findings.push_back({"The installation root does not exist: " + Text(root),
                        "Repair the installation, or correct \"RootDir\" in its record."});
    return false;
}

/// @return whether the shell knows the folder
bool ExamineShellFolder(Findings& findings, Utf8String (*directory)(), const char* variable)
{
    try
    {
        directory();
        return true;
    }
    catch (const std::runtime_error& failure)
    {
        findings.push_back({std::string{failure.what()} + ".",
                            "See that it exists and that its path is absolute and at most 259 bytes long. (On Linux "
                            "the variable " +
                                std::string{variable} + " can name it.)"});
        return false;
    }
}

bool IsFile(const std::filesystem::path& file)
{
    std::error_code error;
    return std::filesystem::is_regular_file(file, error);
}

bool IsEmptyFile(const std::filesystem::path& file)
{
    std::error_code error;
    return IsFile(file) && std::filesystem::file_size(file, error) == 0 && !error;
}

/// What the reader cannot make sense of in a copy that differs from its default.
void ExamineIniCopy(Findings& findings, const UserFile& file)
{
    const std::filesystem::path copy = QnFileName{file.path}.ToNativePath();
    const std::filesystem::path original = QnFileName{file.installedDefault}.ToNativePath();
    const std::string extension = copy.extension().string();
    if ((extension != ".ini" && extension != ".INI") ||
        (IsFile(original) && ReadWholeFile(copy) == ReadWholeFile(original)))
        return;
    constexpr char remedy[] = "Correct it, or move the file away: it is made again from the installed default.";
    for (const IniLine& line : ReadIniLines(copy))
    {
        if (!line.isDamage)
            continue;
        findings.push_back({"Line " + std::to_string(line.number) + " of this user's file " + Text(file.path) + ": " +
                                line.surprise + ".",
                            remedy});
        return; // what follows is often of the same cause; `fraxoinfo ini` shows it
    }
    const auto sections = [](const Utf8String& path)
    {
        IniReader reader;
        std::vector<std::string> names;
        reader.LoadFile(path.ToStdString());
        return reader.GetSectionList(names);
    };
    if (sections(file.path) == 0 && sections(file.installedDefault) != 0)
        findings.push_back({"This user's file has no section, although its default has: " + Text(file.path), remedy});
}

/// Empty or unreadable: a program would find nothing where the installed default has something.
void ExamineUserCopy(Findings& findings, const UserFile& file)
{
    const std::filesystem::path copy = QnFileName{file.path}.ToNativePath();
    if (IsEmptyFile(copy))
    {
        if (!IsEmptyFile(QnFileName{file.installedDefault}.ToNativePath()))
            findings.push_back({"This user's file is empty: " + Text(file.path),
                                "Delete it: it is made again from the installed default when it is next asked for."});
        return;
    }
    try
    {
        if (IsFile(copy) && std::ifstream{copy, std::ios::binary}.get() != std::ifstream::traits_type::eof())
            return ExamineIniCopy(findings, file);
    }
    catch (const std::runtime_error&) // changed meanwhile
    {
    }
    findings.push_back({"This user's file cannot be read: " + Text(file.path),
                        "Check that it is a file and that this user may read it. Only if that does not help, move it "
                        "away: it is made again, without what the user has changed."});
}

/// Each default that a getter would copy. Without a root, those below it are not reported one by one.
void ExamineUserFiles(Findings& findings, Findings& missing, bool hasRoot)
{
    const std::string machineData = Text(DirectoryConfig::GetProgramDataDirectory());
    for (const Operation& operation : Catalogue())
    {
        if (!operation.userFile)
            continue;
        const UserFile file = operation.userFile();
        if (Exists(file.path))
            ExamineUserCopy(findings, file);
        const bool canBeThere = hasRoot || Text(file.installedDefault).starts_with(machineData);
        if (canBeThere && !Exists(file.installedDefault))
            missing.push_back({"The installed default that " + std::string{operation.name} +
                                   " copies is missing: " + Text(file.installedDefault),
                               Repair});
    }
}

void ExamineLanguages(Findings& findings, Findings& missing, bool hasRoot)
{
    const std::set<Utf8String> installed = LanguageHelper::GetInstalledLanguages();
    for (const LanguageChoice& place : LanguageChoices)
    {
        const Utf8String choice = RegistryHelper::GetStringValue(place.root, LanguageChoiceKey(), place.name, {});
        if (ForcedLanguage().empty() && !choice.empty() && !installed.contains(choice))
            findings.push_back({std::string{"The "} + place.whose + " language \"" + Text(choice) +
                                    "\" is not installed and therefore ignored.",
                                "Install it, or choose an installed one. Letter case matters."});
    }
    for (const Utf8String& code : installed)
    {
        const Utf8String directory = LanguageHelper::GetCurrentLanguageDirectory(code);
        if (hasRoot && !Exists(directory))
            missing.push_back(
                {"The language \"" + Text(code) + "\" has no resource folder: " + Text(directory), Repair});
    }
}

void ExamineLogging(Findings& findings, bool canBeThere)
{
    const LogSetup setup = ExamineLog(ThisProgram(), false);
    const std::string file = Text(setup.choice.File().GetNameUtf8());
    if (!setup.exists && canBeThere)
        findings.push_back(
            {"There is no log configuration: " + file + ". Only warnings and worse are logged, to standard error.",
             "Repair the installation, or write one."});
    if (!setup.faults.empty())
        findings.push_back({"The log configuration has faults (" + std::to_string(setup.faults.size()) +
                                "). The first: " + setup.faults.front(),
                            "Correct it there; \"fraxoinfo log\" shows all faults."});
    else if (setup.isSilent)
        findings.push_back({"The log configuration " + file + " sends no record anywhere.",
                            "Give the root a level and an appender there; \"fraxoinfo log\" shows what applies."});
    for (const std::string& log : setup.notWritable)
        findings.push_back({"The log file cannot be written: " + log,
                            "Check that its folder is a folder, and that this user may write there."});
}
} // namespace

std::vector<Finding> Examine()
{
    Findings findings = ExamineRegistryFiles(); // first: what is wrong there may be the cause of all else
    Findings missing;
    const bool hasRoot = ExamineRoot(findings);
    const bool hasMachineData = ExamineShellFolder(findings, DirectoryConfig::GetProgramDataDirectory, "PROGRAMDATA");
    const bool hasUserData = ExamineShellFolder(findings, DirectoryConfig::GetLocalAppDataDirectory, "LOCALAPPDATA");
    if (hasMachineData && hasUserData)
        ExamineUserFiles(findings, missing, hasRoot);
    if (hasUserData && !CanWriteOrMake(QnFileName{DirectoryConfig::GetLocalAppDataDirectory()}.ToNativePath() / "file"))
        findings.push_back({"This user cannot write the data folder " +
                                Text(DirectoryConfig::GetLocalAppDataDirectory()) +
                                ": no file can be made from its "
                                "default.",
                            "Make the folder writable for this user."});
    ExamineLanguages(findings, missing, hasRoot);
    ExamineVariables(findings, missing);
    if (!DirectoryConfig::IsRunningFromOutput()) // else the variable is the cause
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

std::string Format(const std::vector<Finding>& findings)
{
    if (findings.empty())
        return Coloured("Healthy:", Colour::Good) + " nothing needs attention.\n";
    std::string text;
    for (const Finding& finding : findings)
        text.append(Coloured("!", Colour::Bad))
            .append(" ")
            .append(Printable(finding.problem))
            .append("\n  ")
            .append(Printable(finding.remedy))
            .append("\n");
    const std::string count =
        findings.size() == 1 ? "1 problem needs" : std::to_string(findings.size()) + " problems need";
    return text + "\n" + count + " attention.\n";
}
} // namespace FraxoInfo
