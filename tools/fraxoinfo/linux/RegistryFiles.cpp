#include "Doctor.h"

#include <Platform/Win32.h>

#include "registry/Hives.h"

namespace FraxoInfo
{
using namespace Quenlor::StandIn::Registry;

std::vector<Finding> ExamineRegistryFiles()
{
    std::vector<Finding> findings;
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
    {
        const std::string path = HivePath(root);
        std::vector<RegistryFileProblem> problems;
        if (path.empty())
            findings.push_back({"There is no place for this user's registry.", "Set HOME to the user's folder."});
        else if (HiveProblems(root, problems) != ERROR_SUCCESS)
            findings.push_back({"The registry file " + path + " cannot be read.",
                                "See that it is a file and that this user may read it."});
        for (const RegistryFileProblem& problem : problems)
        {
            findings.push_back({"Line " + std::to_string(problem.line) + " of the registry file " + path +
                                    " is skipped: " + problem.reason + ".",
                                "Correct or delete the line: " + problem.text});
        }
    }
    return findings;
}
} // namespace FraxoInfo
