#include "Diff.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "Json.h"

using nlohmann::ordered_json;

namespace FraxoInfo
{
namespace
{
bool IsObjectOfObjects(const ordered_json& json)
{
    return json.is_object() &&
           std::ranges::all_of(json, [](const ordered_json& element) { return element.is_object(); });
}

ordered_json Read(const std::string& file)
{
    const auto fail = [&]
    {
        throw std::runtime_error(Printable(file) +
                                 " is not a report: name a file that fraxoinfo report or --json has written");
    };
    const auto limited = [&](int depth, ordered_json::parse_event_t, ordered_json&)
    {
        constexpr int deepest = 16;
        if (depth > deepest) // no report is, and what reads it calls itself
            fail();
        return true;
    };
    ordered_json json = ordered_json::parse(JsonOf(ReadWholeFile(file)), limited, false);
    if (json.is_object() && !json.contains("answers"))
        json = ordered_json{{"answers", std::move(json)}};
    if (!json.is_object() || !IsObjectOfObjects(json.at("answers")) ||
        !std::ranges::all_of(json.at("answers"), IsObjectOfObjects))
        fail();
    return json;
}

std::string Text(const ordered_json& value)
{
    if (value.is_null())
        return "(none)";
    if (!value.is_string())
        return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
    return value.get_ref<const std::string&>().empty() ? "(empty)" : value.get<std::string>();
}

/// An entry of an answer, a feature or an application on one line.
std::string Summary(const ordered_json& entry)
{
    if (!entry.is_object())
        return Text(entry);
    if (entry.contains("error"))
        return "failed: " + Text(entry.at("error"));
    std::string text = Text(entry.contains("answer") ? entry.at("answer") : entry.value("value", ordered_json{}));
    if (entry.contains("source"))
        text += " (" + Text(entry.at("source")) + ")";
    if (entry.contains("exists"))
        text += entry.at("exists") == true ? "  [exists]" : "  [missing]";
    return text;
}

using Rows = std::vector<std::pair<std::string, std::string>>;

/// Every thing that a report says, by name.
Rows Flatten(const ordered_json& report)
{
    Rows rows;
    for (const auto& [part, content] : report.items())
    {
        if (part == "answers")
        {
            for (const auto& [className, operations] : content.items())
            {
                for (const auto& [name, entry] : operations.items())
                    rows.emplace_back(className + "::" + name, Summary(entry));
            }
        }
        else if (part == "findings" && content.is_array())
        {
            for (const ordered_json& finding : content)
                rows.emplace_back("finding: " +
                                      Text(finding.is_object() ? finding.value("problem", ordered_json{}) : finding),
                                  "found");
        }
        else if (content.is_structured() && part != "folders")
        {
            for (const auto& [name, entry] : content.items())
                rows.emplace_back(part + " " + name, Summary(entry));
        }
        else if (part != "time" && part != "folders")
            rows.emplace_back(part, Text(content));
    }
    return rows;
}

/// The folders that most answers begin with, under the names that they are folded to.
Rows FoldersOf(const ordered_json& report)
{
    Rows folders;
    const ordered_json answers = report.at("answers").value("DirectoryConfig", ordered_json::object());
    for (const auto& [name, operation] : {std::pair{"<root>", "GetFRAXOProRoot"},
                                          {"<machine data>", "GetProgramDataDirectory"},
                                          {"<user data>", "GetLocalAppDataDirectory"},
                                          {"<program>", "GetCurrentExeDirectory"}})
    {
        const ordered_json entry = answers.value(operation, ordered_json::object());
        const ordered_json value = entry.value("value", ordered_json{});
        std::string folder = value.is_string() ? value.get<std::string>() : "";
        folder.erase(folder.find_last_not_of("\\/") + 1);
        folders.emplace_back(name, folder);
    }
    return folders;
}

void Fold(std::string& text, const Rows& folders)
{
    for (const auto& [name, folder] : folders)
    {
        for (std::size_t at = 0; !folder.empty() && (at = text.find(folder, at)) != std::string::npos;
             at += name.length())
            text.replace(at, folder.length(), name);
    }
}

std::string Dumped(const ordered_json& json)
{
    return json.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

ordered_json Json(const std::vector<Compared>& compared, bool all)
{
    ordered_json rows = ordered_json::array();
    for (const auto& [name, first, second] : compared)
    {
        if (all || first != second)
            rows.push_back({{"name", name}, {"first", first}, {"second", second}});
    }
    return rows;
}
} // namespace

std::vector<Compared> Compare(const std::string& firstFile, const std::string& secondFile)
{
    const ordered_json reports[] = {Read(firstFile), Read(secondFile)};
    std::vector<Compared> compared;
    std::map<std::string, std::size_t> places;
    for (std::string Compared::*const side : {&Compared::first, &Compared::second})
    {
        const ordered_json& report = reports[side == &Compared::first ? 0 : 1];
        Rows folders = FoldersOf(report);
        Rows rows = folders;
        std::ranges::stable_sort(folders, std::ranges::greater{},
                                 [](const auto& folder) { return folder.second.length(); });
        for (auto& row : Flatten(report))
        {
            Fold(row.first, folders);
            Fold(row.second, folders);
            rows.push_back(std::move(row));
        }
        for (const auto& [name, text] : rows)
        {
            const auto [place, isNew] = places.emplace(name, compared.size());
            if (isNew)
                compared.push_back({name, "(not there)", "(not there)"});
            compared[place->second].*side = text;
        }
    }
    return compared;
}

std::string Format(const std::vector<Compared>& compared)
{
    std::string text;
    for (const auto& [name, first, second] : compared)
    {
        if (first != second)
            text += Printable(name) + "\n  - " + Printable(first) + "\n  + " + Printable(second) + "\n";
    }
    return text;
}

std::string ToJson(const std::vector<Compared>& compared)
{
    return Dumped(Json(compared, false));
}

std::string MakePage(const std::vector<Compared>& compared)
{
    return MakePage(Dumped({{"compared", Json(compared, true)}}));
}
} // namespace FraxoInfo
