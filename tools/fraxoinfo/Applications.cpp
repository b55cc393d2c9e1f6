#include "Applications.h"

#include "Terminal.h"

namespace FraxoInfo
{
namespace
{
constexpr struct
{
    const char* name;
    const char* operation;
} Products[] = {
    {"Adapt Builder", "GetAdaptBuilderExePath"},
    {"DesconWin", "GetDesconWinExePath"},
    {"DesconBrace", "GetDesconBraceExePath"},
    {"Fraxo Foundation", "GetFraxoFoundationExePath(false)"},
    {"Fraxo Foundation Advanced", "GetFraxoFoundationExePath(true)"},
    {"KRDC", "GetKRDCExePath"},
    {"Lum Concept", "GetLumConceptExePath"},
    {"Microsoft Word", "GetWordProgID"},
    {"PlanWin", "GetPlanWinExePath"},
    {"Plexora Explorer", "GetPlexoraExplorerExecutablePath"},
    {"System information", "GetMsInfo32ExePath"},
    {"Technip Pipe Rack", "GetTechnipExePath"},
};
} // namespace

std::vector<Application> FindApplications()
{
    std::vector<Application> applications;
    for (const auto& product : Products)
        applications.push_back({product.name, AskFor(*Find(product.operation), false)});
    return applications;
}

std::string Format(const std::vector<Application>& applications)
{
    std::string text;
    for (const auto& [name, answer] : applications)
    {
        const bool isFound = !answer.failure.empty() || !ToText(answer.value).empty();
        text += fmt::format("{}: {}\n{}", Coloured(name, Colour::Heading),
                            isFound ? Shown(answer) : Coloured("not found", Colour::Warning), Format(answer.trace));
    }
    return text;
}
} // namespace FraxoInfo
