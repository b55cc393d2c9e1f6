#include "Json.h"

#include <ctime>
#include <set>
#include <string_view>

#include <fmt/chrono.h>

#include "CoreUtilities.h"
#include "Masking.h"
#include "PageTemplate.h" // made by the build from report.html
#include "System.h"
#include "VersionConfig.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
// In the order of the enumerations.
constexpr const char* KindNames[] = {"text", "list", "number", "flag", "directory", "file"};
constexpr const char* SourceKindNames[] = {"variable", "registry value", "registry key", "path", "system"};

Json SourcesOf(const Answer& answer)
{
    Json sources = Json::array();
    for (const Source& source : answer.trace)
    {
        sources.push_back({{"kind", SourceKindNames[static_cast<std::size_t>(source.kind)]},
                           {"place", source.place},
                           {"shown", Shown(source)}});
        if (source.decided)
            sources.back()["decided"] = true;
    }
    return sources;
}

/// Every variable that the library asked for, and those that decide where the data of this machine are.
Json Variables(const std::vector<Answer>& answers)
{
    // clang-format off
    std::set<std::string> names = {"HOME", "LANG", "LC_ALL", "LC_MESSAGES", "LOCALAPPDATA", "PROGRAMDATA", "USERPROFILE",
                                   "QUENLOR_ANSI_CODE_PAGE", "QUENLOR_REGISTRY_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"};
    // clang-format on
    names.insert(std::begin(FeatureFlags), std::end(FeatureFlags));
    for (const Answer& answer : answers)
    {
        for (const Source& source : answer.trace)
        {
            if (source.kind == Source::Kind::Environment)
                names.insert(source.place);
        }
    }
    Json json = Json::object();
    for (const std::string& name : names)
    {
        const std::string value = GetEnvironmentVariableValue(name);
        json[name] = value.empty() ? Json{} : Json(value);
    }
    return json;
}

/// The folder, or why it is unknown.
std::string Folder(const char* operation)
{
    const Answer answer = AskFor(*Find(operation), false);
    return answer.failure.empty() ? ToText(answer.value) : answer.failure;
}

constexpr std::string_view DataStart = R"(<script type="application/json" id="data">)";
constexpr std::string_view DataEnd = "</script>";
} // namespace

void to_json(Json& json, const std::vector<Feature>& features)
{
    json = Json::object();
    for (const Feature& feature : features)
    {
        Json& entry = json[feature.flag] = {{"value", feature.value}, {"source", feature.source}};
        if (!feature.failure.empty())
            entry["error"] = feature.failure;
    }
}

void to_json(Json& json, const std::vector<Application>& applications)
{
    json = Json::object();
    for (const auto& [name, answer] : applications)
    {
        const std::string found = ToText(answer.value);
        json[name] = {{"answer", found},
                      {"exists", !found.empty() && answer.exists.value_or(true)},
                      {"sources", SourcesOf(answer)}};
    }
}

void to_json(Json& json, const LogSetup& setup)
{
    json = {{"configuration", setup.choice.File().GetNameUtf8().ToStdString()},
            {"exists", setup.exists},
            {"setup", setup.lines},
            {"faults", setup.faults}};
}

void to_json(Json& json, const Finding& finding)
{
    json = {{"problem", finding.problem}, {"remedy", finding.remedy}};
}

void to_json(Json& json, const IniLine& line)
{
    json = {{"line", line.number}, {"section", line.section}};
    if (!line.isHeader)
        json.update({{"key", line.key}, {"value", line.value}});
    if (!line.surprise.empty())
        json["surprise"] = line.surprise;
}

void to_json(Json& json, const Compared& compared)
{
    json = {{"name", compared.name}, {"first", compared.first}, {"second", compared.second}};
}

void to_json(Json& json, const std::vector<Answer>& answers)
{
    json = Json::object();
    for (const Answer& answer : answers)
    {
        Json& entry = json[std::string{answer.operation->className}][std::string{answer.operation->name}];
        entry["kind"] = KindNames[static_cast<std::size_t>(answer.operation->kind)];
        if (!answer.failure.empty())
            entry["error"] = answer.failure;
        else
            std::visit([&entry](const auto& value) { entry["value"] = value; }, answer.value);
        if (answer.exists)
            entry["exists"] = *answer.exists;
    }
}

Json WithSources(const std::vector<Answer>& answers)
{
    Json json = answers;
    for (const Answer& answer : answers)
        json[std::string{answer.operation->className}][std::string{answer.operation->name}]["sources"] =
            SourcesOf(answer);
    return json;
}

std::string Dump(const Json& json)
{
    // Registry values may hold anything: bytes that are not UTF-8 are shown as U+FFFD instead of failing the report.
    // JSON allows DEL and the control characters U+0080 to U+009F, which terminals obey.
    return Printable(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n", "\n", R"(\u{:04x})");
}

std::string MakeReport(bool withPersonalData)
{
    ForgetLanguages(); // so that they come with their sources
    const std::vector<Answer> answers = AskForEverything(false);
    Json report;
    report["release"] = VersionConfig::GetReleaseNumber().ToStdString();
    report["time"] = fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(std::time(nullptr)));
    report["system"] = FRAXOINFO_SYSTEM;
    report["rights"] = IsAdministrator() ? "administrator" : "ordinary user";
    report["registry"] = RegistryPlaces();
    report["folders"] = {{"root", Folder("GetFRAXOProRoot")},
                         {"machine data", Folder("GetProgramDataDirectory")},
                         {"user data", Folder("GetLocalAppDataDirectory")}};
    report["variables"] = Variables(answers);
    report["findings"] = Examine();
    report["answers"] = WithSources(answers);
    report["features"] = ReadFeatures();
    report["applications"] = FindApplications();
    report["log"] = ExamineLog(ThisProgram(), false);
    if (!withPersonalData)
        Mask(report, answers);
    return Dump(report);
}

std::string MakePage(const std::string& json)
{
    std::string page = PageTemplate;
    std::string data{DataStart};
    for (const char character : json) // so that no text in it can end the element
        data += character == '<' ? std::string{"\\u003c"} : std::string{character};
    return page.replace(page.find(DataStart), DataStart.length(), data);
}

std::string JsonOf(const std::string& reportOrPage)
{
    const std::size_t start = reportOrPage.find(DataStart);
    if (start == std::string::npos)
        return reportOrPage;
    const std::size_t data = start + DataStart.length();
    return reportOrPage.substr(data, reportOrPage.find(DataEnd, data) - data);
}
} // namespace FraxoInfo
