#include "Applications.h"

#include <algorithm>

#include <Quenlor/QnFileName.h>

#include "Colour.h"
#include "Report.h"
#include "UserSettingsConfig.h"
#include "core/Paths.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
struct Locator
{
    const char* name;
    Quenlor::Utf8String (*find)();
    bool givesPath = true;
};

constexpr Locator Locators[] = {
    {"Adapt Builder", UserSettingsConfig::GetAdaptBuilderExePath},
    {"DesconWin", UserSettingsConfig::GetDesconWinExePath},
    {"DesconBrace", UserSettingsConfig::GetDesconBraceExePath},
    {"Fraxo Foundation", [] { return UserSettingsConfig::GetFraxoFoundationExePath(false); }},
    {"Fraxo Foundation Advanced", [] { return UserSettingsConfig::GetFraxoFoundationExePath(true); }},
    {"KRDC", UserSettingsConfig::GetKRDCExePath},
    {"Lum Concept", UserSettingsConfig::GetLumConceptExePath},
    {"Microsoft Word", UserSettingsConfig::GetWordProgID, false},
    {"PlanWin", UserSettingsConfig::GetPlanWinExePath},
    {"Plexora Explorer", UserSettingsConfig::GetPlexoraExplorerExecutablePath},
    {"System information", UserSettingsConfig::GetMsInfo32ExePath},
    {"Technip Pipe Rack", UserSettingsConfig::GetTechnipExePath},
};

Application Ask(const Locator& locator)
{
    const Recording recording;
    const Quenlor::Utf8String answer = locator.find();
    Application application{locator.name, answer.ToStdString(), !answer.empty(), recording.Inquiries()};
    if (locator.givesPath)
        application.isThere = Quenlor::QnFileName::DoesPathExist(PathOf(answer).GetName());
    return application;
}

std::string Shown(const Application& application)
{
    if (application.answer.empty())
        return Coloured("not found", Colour::Warning);
    return Printable(application.answer) + (application.isThere ? "" : "  " + Coloured("[missing]", Colour::Warning));
}
} // namespace

std::vector<Application> FindApplications()
{
    std::vector<Application> applications;
    std::ranges::transform(Locators, std::back_inserter(applications), Ask);
    return applications;
}

std::string FormatApplications(const std::vector<Application>& applications)
{
    std::string text;
    for (const Application& application : applications)
    {
        text.append(Coloured(application.name, Colour::Heading)).append(": ").append(Shown(application)).append("\n");
        const bool wasFound = !application.answer.empty();
        text += FormatInquiries(application.inquiries,
                                wasFound ? Decisive(application.inquiries, application.answer) : nullptr);
    }
    return text;
}
} // namespace FraxoInfo
