#include "System.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "CoreUtilities.h"
#include "ForTools.h"
#include "common/StoredText.h"
#include "registry/Hives.h"

namespace FraxoInfo
{
using namespace Quenlor::StandIn::Registry;

namespace
{
/// Shows people which line is meant: a section, or the name of a value. Its data may be personal.
std::string Quoted(const RegistryFileProblem& problem)
{
    constexpr std::size_t longest = 60;
    const std::string& text = problem.text;
    const std::size_t length = text.starts_with('[')   ? text.find_first_of("]\n")
                               : text.starts_with('"') ? text.find_first_of("=\n")
                                                       : text.npos;
    return length > longest ? "" : ": " + Tools::Printable(text.substr(0, length + 1)) + "...";
}

void ExamineLines(std::vector<Finding>& findings, HKEY root, const std::string& path)
{
    std::vector<RegistryFileProblem> problems;
    const LSTATUS status = HiveProblems(root, problems);
    if (status == ERROR_BADDB)
        Add(findings, "The registry file {} is not read at all: it is not a registry file.", path).remedy =
            "Its first line has to be: Windows Registry Editor Version 5.00";
    else if (status != ERROR_SUCCESS)
        Add(findings, "The registry file {} cannot be read.", path).remedy =
            "Check that it is a file and that this user may read it.";
    for (const RegistryFileProblem& problem : problems)
        Add(findings, "Line {} of the registry file {} is skipped: {}.", problem.line, path, problem.reason).remedy =
            "Correct or delete the line" + Quoted(problem);
    if (std::error_code error; std::filesystem::file_size(path + ".skipped", error) != 0 && !error)
        Add(findings, "Lines of the registry file {0} were skipped when it was last written; they are in {0}.skipped.",
            path)
            .remedy = "Import what is still needed with fraxoreg, then delete that file.";
}
} // namespace

bool IsOutputTerminal()
{
    const std::string terminal = GetEnvironmentVariableValue("TERM");
    return !terminal.empty() && terminal != "dumb" && ::isatty(STDOUT_FILENO) == 1;
}

std::vector<std::string> EnvironmentNames()
{
    std::vector<std::string> names;
    for (char** variable = ::environ; variable && *variable; ++variable)
    {
        const std::string_view text{*variable};
        names.emplace_back(text.substr(0, text.find('=')));
    }
    return names;
}

bool CanWrite(const std::filesystem::path& path)
{
    const int wanted = is_directory(path) ? W_OK | X_OK : W_OK;
    return ::faccessat(AT_FDCWD, path.c_str(), wanted, AT_EACCESS) == 0;
}

bool IsAdministrator()
{
    return ::geteuid() == 0;
}

void KeepFilesPrivate()
{
    ::umask(S_IRWXG | S_IRWXO);
}

std::vector<std::string> RegistryPlaces()
{
    return {HivePath(HKEY_LOCAL_MACHINE), HivePath(HKEY_CURRENT_USER)};
}

std::vector<Finding> ExamineRegistryFiles()
{
    std::vector<Finding> findings;
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
    {
        const std::string path = HivePath(root);
        if (!path.empty())
            ExamineLines(findings, root, path);
        else
            Add(findings, "This user's registry has no folder.").remedy = "Set HOME to the user's folder.";
    }
    const std::string users = HivePath(HKEY_CURRENT_USER);
    if (!users.empty() && !CanWriteOrMake(users))
        Add(findings, "This user cannot write the registry file {}: no setting can be stored.", users).remedy =
            "Make the file and its folder writable for this user.";
    return findings;
}
} // namespace FraxoInfo
