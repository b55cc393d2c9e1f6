#include "Doctor.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

#include <Quenlor/QnFileName.h>

#include "Catalogue.h"
#include "Colour.h"
#include "DirectoryConfig.h"
#include "Features.h"
#include "LanguageHelper.h"
#include "LogSetup.h"
#include "RegistryHelper.h"
#include "core/Paths.h"
#include "language/LanguageChoice.h"

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
    return QnFileName::DoesPathExist(PathOf(path).GetName());
}

std::string Text(const Utf8String& text)
{
    return text.ToStdString();
}

/// @return whether there is a root to look below
bool ExamineRoot(Findings& findings)
{
    const Utf8String root = DirectoryConfig::GetFRAXOProRoot();
    if (root.empty())
    {
        findings.push_back({"There is no installation record: HKEY_CLASSES_ROOT\\" +
                                Text(VersionConfig::GetVersionStamp()) +
                                " has no text called \"RootDir\", or an empty one.",
                            "Install the product, or repair its installation."});
        return false;
    }
    if (!PathOf(root).IsAbsolutePath())
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

bool HasContents(const std::filesystem::path& file)
{
    std::ifstream stream{file, std::ios::binary};
    return stream.get() != std::ifstream::traits_type::eof();
}

bool IsEmptyFile(const std::filesystem::path& file)
{
    std::error_code error;
    return std::filesystem::is_regular_file(file, error) && std::filesystem::file_size(file, error) == 0 && !error;
}

/// Empty or unreadable: a program would find nothing where the installed default has something.
void ExamineUserCopy(Findings& findings, const UserFile& file)
{
    const std::filesystem::path copy = PathOf(file.path).ToNativePath();
    if (HasContents(copy) || (IsEmptyFile(copy) && IsEmptyFile(PathOf(file.installedDefault).ToNativePath())))
        return;
    if (IsEmptyFile(copy))
        findings.push_back({"This user's file is empty: " + Text(file.path),
                            "Delete it: it is made again from the installed default when it is next asked for."});
    else
        findings.push_back({"This user's file cannot be read: " + Text(file.path),
                            "See that it is a file and that this user may read it. Only if that does not help move it "
                            "away: it is made again then, without what the user has changed."});
}

/// Each default that a getter would copy. Without a root, those that lie below it are not complained about one by one.
void ExamineUserFiles(Findings& findings, bool hasRoot)
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
            findings.push_back({"The installed default that " + std::string{operation.name} +
                                    " copies is missing: " + Text(file.installedDefault),
                                Repair});
    }
}

void ExamineLanguages(Findings& findings, bool hasRoot)
{
    const std::set<Utf8String> installed = LanguageHelper::GetInstalledLanguages();
    for (const LanguageChoice& place : LanguageChoices)
    {
        const Utf8String choice = RegistryHelper::GetStringValue(place.root, LanguageChoiceKey(), place.name, {});
        if (ForcedLanguage().empty() && !choice.empty() && !installed.contains(choice))
            findings.push_back({std::string{"The "} + place.whose + " language \"" + Text(choice) +
                                    "\" is not installed and therefore ignored.",
                                "Install it, or choose an installed one. Letter case counts."});
    }
    for (const Utf8String& code : installed)
    {
        const Utf8String directory = LanguageHelper::GetCurrentLanguageDirectory(code);
        if (hasRoot && !Exists(directory))
            findings.push_back(
                {"The language \"" + Text(code) + "\" has no resource folder: " + Text(directory), Repair});
    }
}

void ExamineFeatures(Findings& findings)
{
    for (const Feature& feature : ReadFeatures())
    {
        if (!feature.failure.empty())
            findings.push_back({"The feature switch " + feature.flag + " has an unusable value in the " +
                                    feature.source + ": a program that asks for it fails.",
                                "Set it to 0 or 1 there, or remove it."});
    }
}

/// A missing configuration is none of the findings: then warnings go to standard error.
void ExamineLogConfiguration(Findings& findings)
{
    const std::vector<std::string> faults = ExamineLog(ThisProgram()).faults;
    if (!faults.empty())
        findings.push_back({"The log configuration is faulty (faults: " + std::to_string(faults.size()) +
                                "). The first: " + faults.front(),
                            "Correct it there; \"fraxoinfo log\" tells all faults."});
}
} // namespace

std::vector<Finding> Examine()
{
    Findings findings = ExamineRegistryFiles(); // first: what is wrong there may be the cause of all else
    const bool hasRoot = ExamineRoot(findings);
    const bool hasMachineData = ExamineShellFolder(findings, DirectoryConfig::GetProgramDataDirectory, "PROGRAMDATA");
    const bool hasUserData = ExamineShellFolder(findings, DirectoryConfig::GetLocalAppDataDirectory, "LOCALAPPDATA");
    if (hasMachineData && hasUserData)
        ExamineUserFiles(findings, hasRoot);
    ExamineLanguages(findings, hasRoot);
    ExamineFeatures(findings);
    ExamineLogConfiguration(findings);
    return findings;
}

std::string FormatFindings(const std::vector<Finding>& findings)
{
    if (findings.empty())
        return Coloured("Healthy:", Colour::Good) + " nothing needs attention.\n";
    std::string text;
    for (const Finding& finding : findings)
        text.append(Coloured("!", Colour::Bad))
            .append(" ")
            .append(finding.problem)
            .append("\n  ")
            .append(finding.remedy)
            .append("\n");
    const std::string count =
        findings.size() == 1 ? "1 problem needs" : std::to_string(findings.size()) + " problems need";
    return text + "\n" + count + " attention.\n";
}
} // namespace FraxoInfo
