#include "Json.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <exception>
#include <set>
#include <string_view>

#include <nlohmann/json.hpp>

#include "CoreUtilities.h"
#include "DirectoryConfig.h"
#include "Masking.h"
#include "PageTemplate.h" // made by the build from report.html
#include "System.h"
#include "VersionConfig.h"

using nlohmann::ordered_json;
using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
const char* NameOf(Kind kind)
{
    switch (kind)
    {
    case Kind::Text:
        return "text";
    case Kind::List:
        return "list";
    case Kind::Number:
        return "number";
    case Kind::Flag:
        return "flag";
    case Kind::Directory:
        return "directory";
    case Kind::File:
        return "file";
    }
    return "";
}

const char* NameOf(Source::Kind kind)
{
    switch (kind)
    {
    case Source::Kind::Environment:
        return "variable";
    case Source::Kind::RegistryValue:
        return "registry value";
    case Source::Kind::RegistryKey:
        return "registry key";
    case Source::Kind::Path:
        return "path";
    case Source::Kind::System:
        return "system";
    }
    return "";
}

std::string Dump(const ordered_json& json)
{
    // Registry values may hold anything: bytes that are not UTF-8 are shown as U+FFFD instead of failing the report.
    const std::string text = json.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
    std::string safe; // without DEL and the control characters U+0080 to U+009F, which JSON allows and terminals obey
    for (std::size_t i = 0; i < text.length(); ++i)
    {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool isC1 = byte == 0xC2 && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (isC1 || byte == 0x7F)
        {
            char escaped[7];
            std::snprintf(escaped, sizeof escaped, "\\u00%02x", static_cast<unsigned char>(isC1 ? text[++i] : text[i]));
            safe += escaped;
        }
        else
            safe += text[i];
    }
    return safe;
}

ordered_json Json(const Trace& trace)
{
    ordered_json sources = ordered_json::array();
    for (const Source& source : trace)
    {
        ordered_json& entry = sources.emplace_back();
        entry = {{"kind", NameOf(source.kind)}, {"place", source.place}, {"shown", Shown(source)}};
        if (source.decided)
            entry["decided"] = true;
    }
    return sources;
}

ordered_json Json(const Answer& answer, bool withSources)
{
    ordered_json entry = {{"kind", NameOf(answer.operation->kind)}};
    if (!answer.failure.empty())
        entry["error"] = answer.failure;
    else
        std::visit([&entry](const auto& value) { entry["value"] = value; }, answer.value);
    if (answer.exists)
        entry["exists"] = *answer.exists;
    if (withSources)
        entry["sources"] = Json(answer.trace);
    return entry;
}

ordered_json Json(const std::vector<Answer>& answers, bool withSources)
{
    ordered_json json = ordered_json::object();
    for (const Answer& answer : answers)
        json[std::string{answer.operation->className}][std::string{answer.operation->name}] = Json(answer, withSources);
    return json;
}

ordered_json Json(const std::vector<Feature>& features)
{
    ordered_json json = ordered_json::object();
    for (const Feature& feature : features)
    {
        ordered_json& entry = json[feature.flag];
        entry = {{"value", feature.value}, {"source", feature.source}};
        if (!feature.failure.empty())
            entry["error"] = feature.failure;
    }
    return json;
}

ordered_json Json(const std::vector<Application>& applications)
{
    ordered_json json = ordered_json::object();
    for (const Application& application : applications)
        json[application.name] = {{"answer", ToText(application.answer.value)},
                                  {"exists", application.IsThere()},
                                  {"sources", Json(application.answer.trace)}};
    return json;
}

ordered_json Json(const LogSetup& setup)
{
    return {{"configuration", setup.choice.File().GetNameUtf8().ToStdString()},
            {"exists", setup.exists},
            {"setup", setup.lines},
            {"faults", setup.faults}};
}

ordered_json Json(const std::vector<Finding>& findings)
{
    ordered_json json = ordered_json::array();
    for (const Finding& finding : findings)
        json.push_back({{"problem", finding.problem}, {"remedy", finding.remedy}});
    return json;
}

/// Every variable that the library asked for, and those that decide where this machine's data are.
ordered_json Variables(const std::vector<Answer>& answers)
{
    std::set<std::string> names = {"FRAXO_PRO_LANGUAGE",
                                   "HOME",
                                   "LANG",
                                   "LC_ALL",
                                   "LC_MESSAGES",
                                   "LOCALAPPDATA",
                                   "PROGRAMDATA",
                                   "QUENLOR_ANSI_CODE_PAGE",
                                   "QUENLOR_REGISTRY_DIR",
                                   "USERPROFILE",
                                   "XDG_CONFIG_HOME",
                                   "XDG_DATA_HOME"};
    names.insert(std::begin(FeatureFlags), std::end(FeatureFlags));
    for (const Answer& answer : answers)
    {
        for (const Source& source : answer.trace)
        {
            if (source.kind == Source::Kind::Environment)
                names.insert(source.place);
        }
    }
    ordered_json json = ordered_json::object();
    for (const std::string& name : names)
    {
        const std::string value = GetEnvironmentVariableValue(name);
        json[name] = nullptr;
        if (!value.empty())
            json[name] = value;
    }
    return json;
}

/// The folder, or why there is none.
std::string FolderOrFailure(Quenlor::Utf8String (*folder)())
try
{
    return folder().ToStdString();
}
catch (const std::exception& failure)
{
    return failure.what();
}

void Mask(ordered_json& json, const Masking& masking)
{
    if (json.is_structured())
    {
        for (ordered_json& element : json)
            Mask(element, masking);
    }
    else if (json.is_string())
        json = masking.Apply(json.get_ref<const std::string&>());
}

constexpr std::string_view DataStart = R"(<script type="application/json" id="data">)";
constexpr std::string_view DataEnd = "</script>";
} // namespace

std::string ToJson(const std::vector<Answer>& answers)
{
    return Dump(Json(answers, false));
}

std::string ToJson(const Answer& answer)
{
    ordered_json json;
    json[std::string{answer.operation->className}][std::string{answer.operation->name}] = Json(answer, true);
    return Dump(json);
}

// clang-format off
std::string ToJson(const std::vector<Feature>& features)         { return Dump(Json(features)); }
std::string ToJson(const std::vector<Application>& applications) { return Dump(Json(applications)); }
std::string ToJson(const LogSetup& setup)                        { return Dump(Json(setup)); }
std::string ToJson(const std::vector<Finding>& findings)         { return Dump(Json(findings)); }
std::string ToJson(const std::vector<std::string>& names)        { return Dump(names); }
// clang-format on

std::string ToJson(const std::vector<IniLine>& lines)
{
    ordered_json json = ordered_json::array();
    for (const IniLine& line : lines)
    {
        ordered_json& entry = json.emplace_back();
        entry = {{"line", line.number}, {"section", line.section}};
        if (!line.isHeader)
            entry.update({{"key", line.key}, {"value", line.value}});
        if (!line.surprise.empty())
            entry["surprise"] = line.surprise;
    }
    return Dump(json);
}

std::string MakeReport(bool withPersonalData)
{
    ForgetLanguages(); // so that they come with their sources
    const std::vector<Answer> answers = AskForEverything(false);
    const std::vector<Application> applications = FindApplications();
    const std::time_t now = std::time(nullptr);
    std::array<char, 32> time{};
    std::strftime(time.data(), time.size(), "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&now));
    ordered_json report;
    report["release"] = VersionConfig::GetReleaseNumber().ToStdString();
    report["time"] = time.data();
    report["system"] = FRAXOINFO_SYSTEM;
    report["rights"] = IsAdministrator() ? "administrator" : "ordinary user";
    report["registry"] = RegistryPlaces();
    report["folders"] = {{"root", FolderOrFailure(DirectoryConfig::GetFRAXOProRoot)},
                         {"machine data", FolderOrFailure(DirectoryConfig::GetProgramDataDirectory)},
                         {"user data", FolderOrFailure(DirectoryConfig::GetLocalAppDataDirectory)}};
    report["variables"] = Variables(answers);
    report["findings"] = Json(Examine());
    report["answers"] = Json(answers, true);
    report["features"] = Json(ReadFeatures());
    report["applications"] = Json(applications);
    report["log"] = Json(ExamineLog(ThisProgram(), false));
    if (!withPersonalData)
        Mask(report, Masking{answers});
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
