#include "Json.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace FraxoInfo
{
namespace
{
bool IsObjectOfObjects(const Json& json)
{
    return json.is_object() && std::ranges::all_of(json, [](const Json& element) { return element.is_object(); });
}

Json Read(const std::string& file)
{
    const auto fail = [&]
    {
        throw std::runtime_error(Printable(file) +
                                 " is not a report: name a file that fraxoinfo report or --json has written");
    };
    const auto limited = [&](int depth, Json::parse_event_t, Json&)
    {
        constexpr int deepest = 16;
        if (depth > deepest) // no report is, and what reads it is recursive
            fail();
        return true;
    };
    Json json = Json::parse(JsonOf(ReadWholeFile(file)), limited, false);
    if (json.is_object() && !json.contains("answers"))
        json = Json{{"answers", std::move(json)}};
    if (!json.is_object() || !IsObjectOfObjects(json.at("answers")) ||
        !std::ranges::all_of(json.at("answers"), IsObjectOfObjects))
        fail();
    return json;
}

std::string Text(const Json& value)
{
    if (value.is_null())
        return "(none)";
    if (!value.is_string())
        return value.dump(-1, ' ', false, Json::error_handler_t::replace);
    return value.get_ref<const std::string&>().empty() ? "(empty)" : value.get<std::string>();
}

/// An entry of an answer, a feature or an application on one line.
std::string Summary(const Json& entry)
{
    if (!entry.is_object())
        return Text(entry);
    if (entry.contains("error"))
        return "failed: " + Text(entry.at("error"));
    std::string text = Text(entry.contains("answer") ? entry.at("answer") : entry.value("value", Json{}));
    if (entry.contains("source"))
        text += " (" + Text(entry.at("source")) + ")";
    if (entry.contains("exists"))
        text += entry.at("exists") == true ? "  [exists]" : "  [missing]";
    return text;
}

using Rows = std::vector<std::pair<std::string, std::string>>;

/// The folders that most answers begin with, under the names that they are folded to.
Rows FoldersOf(const Json& report)
{
    Rows folders;
    for (const auto& [name, operation] : {std::pair{"<root>", "GetFRAXOProRoot"},
                                          {"<machine data>", "GetProgramDataDirectory"},
                                          {"<user data>", "GetLocalAppDataDirectory"},
                                          {"<program>", "GetCurrentExeDirectory"}})
    {
        const Json::json_pointer place{fmt::format("/answers/DirectoryConfig/{}/value", operation)};
        const Json value = report.value(place, Json{});
        std::string folder = value.is_string() ? value.get<std::string>() : "";
        folder.erase(folder.find_last_not_of("\\/") + 1);
        folders.emplace_back(name, folder);
    }
    return folders;
}

std::string Folded(std::string text, const Rows& folders)
{
    for (const auto& [name, folder] : folders)
    {
        for (std::size_t at = 0; !folder.empty() && (at = text.find(folder, at)) != std::string::npos;
             at += name.length())
            text.replace(at, folder.length(), name);
    }
    return text;
}

/// Everything that a report says, by name.
Rows RowsOf(const Json& report)
{
    Rows rows = FoldersOf(report);
    Rows folders = rows; // the longest first: one may be in another
    std::ranges::stable_sort(folders, std::ranges::greater{},
                             [](const auto& folder) { return folder.second.length(); });
    const auto add = [&](const std::string& name, const std::string& text)
    { rows.emplace_back(Folded(name, folders), Folded(text, folders)); };
    for (const auto& [part, content] : report.items())
    {
        if (part == "time" || part == "folders")
            continue;
        if (!content.is_structured())
        {
            add(part, Text(content));
            continue;
        }
        for (const auto& [name, entry] : content.items())
        {
            if (part == "findings")
                add("finding: " + Text(entry.is_object() ? entry.value("problem", Json{}) : entry), "found");
            else if (part != "answers")
                add(part + " " + name, Summary(entry));
            else
                for (const auto& [operation, answer] : entry.items())
                    add(name + "::" + operation, Summary(answer));
        }
    }
    return rows;
}
} // namespace

std::vector<Compared> Compare(const std::string& firstFile, const std::string& secondFile)
{
    std::vector<Compared> compared;
    std::map<std::string, std::size_t> places;
    const auto add = [&](const std::string& file, std::string Compared::*side)
    {
        for (const auto& [name, text] : RowsOf(Read(file)))
        {
            const auto [place, isNew] = places.emplace(name, compared.size());
            if (isNew)
                compared.push_back({name, "(not there)", "(not there)"});
            compared[place->second].*side = text;
        }
    };
    add(firstFile, &Compared::first);
    add(secondFile, &Compared::second);
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
    return text.empty() ? "No differences.\n" : text;
}
} // namespace FraxoInfo
