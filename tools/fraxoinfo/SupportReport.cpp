#include "SupportReport.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <vector>

#include <Quenlor/QnFileName.h>

#include "Applications.h"
#include "CoreUtilities.h"
#include "Doctor.h"
#include "Features.h"
#include "Json.h"
#include "LogSetup.h"
#include "UserSettingsConfig.h"
#include "VersionConfig.h"
#include "Words.h"
#include "core/Paths.h"

using nlohmann::ordered_json;
using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
ordered_json FeaturesJson()
{
    ordered_json json = ordered_json::object();
    for (const Feature& feature : ReadFeatures())
    {
        ordered_json& entry = json[feature.flag];
        entry["value"] = feature.value;
        entry["source"] = feature.source;
        if (!feature.failure.empty())
            entry["error"] = feature.failure;
    }
    return json;
}

ordered_json ApplicationsJson()
{
    ordered_json json = ordered_json::object();
    for (const Application& application : FindApplications())
        json[application.name] = {{"answer", application.answer}, {"exists", application.isThere}};
    return json;
}

ordered_json FindingsJson()
{
    ordered_json json = ordered_json::array();
    for (const Finding& finding : Examine())
        json.push_back({{"problem", finding.problem}, {"remedy", finding.remedy}});
    return json;
}

ordered_json LogJson()
{
    const LogSetup setup = ExamineLog(ThisProgram());
    return {{"configuration", setup.choice.File().GetNameUtf8().ToStdString()},
            {"exists", setup.exists},
            {"setup", setup.lines},
            {"faults", setup.faults}};
}

/// What must not leave the machine unasked, and what stands in its place.
struct Personal
{
    std::string text;
    const char* placeholder;
};

/// The name of the user's folder, which stands in many paths.
std::string Account()
{
    std::string home = GetEnvironmentVariableValue("USERPROFILE");
    if (home.empty())
        home = GetEnvironmentVariableValue("HOME");
    const Quenlor::QnFileName path = PathOf(home);
    return Quenlor::QnFileName{Quenlor::QnFileName::FileNameAndExtension, path.GetName()}.GetNameUtf8().ToStdString();
}

std::vector<Personal> PersonalData()
{
    return {{UserSettingsConfig::GetUserNameString().ToStdString(), "<user name>"},
            {UserSettingsConfig::GetUserEmail().ToStdString(), "<e-mail address>"},
            {UserSettingsConfig::GetDefaultConnectedProjectId().ToStdString(), "<project id>"},
            {UserSettingsConfig::GetDefaultConnectedProjectName().ToStdString(), "<project name>"},
            {Account(), "<account>"}};
}

/// Whole words alone: a user called "A" must not take every A out of the report.
std::string Without(const Personal& personal, const std::string& text)
{
    std::string result;
    std::size_t kept = 0;
    for (std::size_t at = FindWord(text, personal.text); at != std::string::npos;
         at = FindWord(text, personal.text, kept))
    {
        result.append(text, kept, at - kept).append(personal.placeholder);
        kept = at + personal.text.length();
    }
    return result.append(text, kept);
}

void LeaveOut(ordered_json& json, const std::vector<Personal>& personalData)
{
    if (json.is_structured())
    {
        for (ordered_json& element : json)
            LeaveOut(element, personalData);
        return;
    }
    if (!json.is_string())
        return;
    for (const Personal& personal : personalData)
        json = Without(personal, json.get<std::string>());
}

bool HoldsAnswers(const ordered_json& json)
{
    const auto isObject = [](const ordered_json& element) { return element.is_object(); };
    return json.is_object() &&
           std::ranges::all_of(json, [&](const ordered_json& operations)
                               { return isObject(operations) && std::ranges::all_of(operations, isObject); });
}

/// The answers of a report, or of what --json printed.
ordered_json ReadAnswers(const std::string& file)
{
    std::ifstream stream{file, std::ios::binary};
    if (!stream)
        throw std::runtime_error("cannot read " + file + ": see that it exists and that you may read it");
    ordered_json json = ordered_json::parse(stream, nullptr, false);
    if (json.is_object() && json.contains("answers"))
        json = json.at("answers");
    if (!HoldsAnswers(json))
        throw std::runtime_error(file + " is no report: name a file that fraxoinfo report or --json has written");
    return json;
}

/// One side of a comparison.
std::string Shown(const ordered_json& answers, const std::string& className, const std::string& name)
{
    const ordered_json entry = answers.value(className, ordered_json::object()).value(name, ordered_json::object());
    if (entry.empty())
        return "(not asked)";
    const ordered_json value = entry.contains("error") ? entry.at("error") : entry.value("value", ordered_json{});
    std::string text = entry.contains("error") ? "failed: " : "";
    text += value.is_string() ? Printable(value.get<std::string>()) : value.dump();
    if (entry.contains("exists"))
        text += entry.at("exists") == true ? "  [exists]" : "  [missing]";
    return text;
}
} // namespace

std::string MakeSupportReport(bool withPersonalData)
{
    ordered_json report;
    report["release"] = VersionConfig::GetReleaseNumber().ToStdString();
    report["system"] = FRAXOINFO_SYSTEM;
    report["answers"] = ToJson(AskForEverything(false));
    report["features"] = FeaturesJson();
    report["applications"] = ApplicationsJson();
    report["log"] = LogJson();
    report["findings"] = FindingsJson();
    if (!withPersonalData)
        LeaveOut(report, PersonalData());
    return Dump(report);
}

std::string CompareReports(const std::string& firstFile, const std::string& secondFile)
{
    const ordered_json first = ReadAnswers(firstFile);
    const ordered_json second = ReadAnswers(secondFile);
    ordered_json all = second; // the order of the first, then what only the second has
    all.merge_patch(first);
    std::string text;
    for (const auto& [className, operations] : all.items())
    {
        for (const auto& [name, entry] : operations.items())
        {
            const std::string before = Shown(first, className, name);
            const std::string after = Shown(second, className, name);
            if (before != after)
                text.append(className)
                    .append("::")
                    .append(name)
                    .append("\n  - ")
                    .append(before)
                    .append("\n  + ")
                    .append(after)
                    .append("\n");
        }
    }
    return text;
}
} // namespace FraxoInfo
