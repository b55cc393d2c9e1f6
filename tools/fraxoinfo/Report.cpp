#include "Report.h"

#include <algorithm>
#include <exception>

#include "Colour.h"
#include "Json.h"
#include "core/Paths.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;
using Quenlor::QnFileName;

namespace FraxoInfo
{
namespace
{
bool IsPlace(Kind kind)
{
    return kind == Kind::Directory || kind == Kind::File;
}

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

std::string Join(const std::vector<std::string>& items, std::string_view separator)
{
    std::string text;
    for (const std::string& item : items)
        text.append(text.empty() ? "" : separator).append(item);
    return text;
}

/// Asks what providing the file asks, without making it.
Value LookFor(const UserFile& file)
{
    if (!Exists(PathOf(file.path)))
        Exists(PathOf(file.installedDefault));
    return file.path.ToStdString();
}
} // namespace

std::string Shown(const Answer& answer)
{
    if (!answer.failure.empty())
        return Coloured("failed: " + Printable(answer.failure), Colour::Bad);
    const auto* const list = std::get_if<std::vector<std::string>>(&answer.value);
    const std::string text = list ? Join(*list, " ") : ToText(answer.value);
    if (text.empty())
        return "(empty)";
    std::string shown = Printable(text);
    if (answer.exists)
        shown += "  " + (*answer.exists ? "[exists]" : Coloured("[missing]", Colour::Warning));
    return shown;
}

Answer AskFor(const Operation& operation, bool provide)
{
    Answer answer{&operation, {}, {}, {}};
    try
    {
        answer.value = operation.userFile && !provide ? LookFor(operation.userFile()) : operation.ask();
        if (IsPlace(operation.kind)) // asked past the library: it is no part of the answer
            answer.exists = QnFileName::DoesPathExist(PathOf(std::get<std::string>(answer.value)).GetName());
    }
    catch (const std::exception& failure)
    {
        answer.failure = failure.what();
    }
    return answer;
}

std::vector<Answer> AskForEverything(bool provide)
{
    std::vector<Answer> answers;
    for (const Operation& operation : Catalogue())
        answers.push_back(AskFor(operation, provide));
    return answers;
}

std::string ToText(const Value& value)
{
    struct
    {
        std::string operator()(const std::string& text) const { return text; }
        std::string operator()(bool flag) const { return flag ? "true" : "false"; }
        std::string operator()(std::int64_t number) const { return std::to_string(number); }
        std::string operator()(double number) const { return nlohmann::json(number).dump(); } // the fewest digits
        std::string operator()(const std::vector<std::string>& list) const { return Join(list, "\n"); }
    } toText;
    return std::visit(toText, value);
}

std::string FormatTable(const std::vector<Answer>& answers)
{
    std::size_t width = 0;
    for (const Answer& answer : answers)
        width = std::max(width, answer.operation->name.length());

    std::string table;
    std::string_view className;
    for (const Answer& answer : answers)
    {
        const Operation& operation = *answer.operation;
        if (operation.className != className)
        {
            table.append(className.empty() ? "" : "\n")
                .append(Coloured(operation.className, Colour::Heading))
                .append("\n");
            className = operation.className;
        }
        table.append("  ").append(operation.name).append(width - operation.name.length() + 2, ' ');
        table.append(Shown(answer)).append("\n");
    }
    return table;
}

nlohmann::ordered_json ToJson(const std::vector<Answer>& answers)
{
    nlohmann::ordered_json json;
    for (const Answer& answer : answers)
    {
        nlohmann::ordered_json& entry =
            json[std::string{answer.operation->className}][std::string{answer.operation->name}];
        entry["kind"] = NameOf(answer.operation->kind);
        if (!answer.failure.empty())
            entry["error"] = answer.failure;
        else
            std::visit([&entry](const auto& value) { entry["value"] = value; }, answer.value);
        if (answer.exists)
            entry["exists"] = *answer.exists;
    }
    return json;
}

std::string Dump(const nlohmann::ordered_json& json)
{
    // Registry values may hold anything: bytes that are no UTF-8 are shown as U+FFFD instead of failing the report.
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string FormatJson(const std::vector<Answer>& answers)
{
    return Dump(ToJson(answers));
}
} // namespace FraxoInfo
