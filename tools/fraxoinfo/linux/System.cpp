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
/// What shows people which line is meant: a section, or the name of a value. The data may be anything of the user's.
std::string Quoted(const RegistryFileProblem& problem)
{
    constexpr std::size_t longest = 60;
    const std::string& text = problem.text;
    std::size_t length = 0;
    if (text.starts_with('['))
        length = text.find_first_of("]\n");
    else if (text.starts_with('"'))
        length = text.find_first_of("=\n");
    if (length == 0 || length == std::string::npos || length > longest)
        return "";
    return ": " + Tools::Printable(text.substr(0, length + 1)) + "...";
}

void ExamineLines(std::vector<Finding>& findings, HKEY root, const std::string& path)
{
    std::vector<RegistryFileProblem> problems;
    const LSTATUS status = HiveProblems(root, problems);
    if (status == ERROR_BADDB)
        findings.push_back({"The registry file " + path + " is not read at all: it is not a registry file.",
                            "Its first line has to be: Windows Registry Editor Version 5.00"});
    else if (status != ERROR_SUCCESS)
        findings.push_back({"The registry file " + path + " cannot be read.",
                            "Check that it is a file and that this user may read it."});
    for (const RegistryFileProblem& problem : problems)
        findings.push_back({"Line " + std::to_string(problem.line) + " of the registry file " + path +
                                " is skipped: " + problem.reason + ".",
                            "Correct or delete the line" + Quoted(problem)});
    struct stat saved
    {
    };
    if (::stat((path + ".skipped").c_str(), &saved) == 0 && saved.st_size != 0)
        findings.push_back({"Lines of the registry file " + path +
                                " were skipped when it was last written; they are in " + path + ".skipped.",
                            "Import what is still needed with fraxoreg, then delete that file."});
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
            findings.push_back({"There is no place for this user's registry.", "Set HOME to the user's folder."});
    }
    const std::string users = HivePath(HKEY_CURRENT_USER);
    if (!users.empty() && !CanWriteOrMake(users))
        findings.push_back({"This user cannot write the registry file " + users + ": no setting can be stored.",
                            "Make the file and its folder writable for this user."});
    return findings;
}
} // namespace FraxoInfo
