#include "Answer.h"

#include <algorithm>
#include <exception>
#include <type_traits>

#include <Quenlor/QnFileName.h>

#include "Terminal.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;
using Quenlor::QnFileName;

namespace FraxoInfo
{
namespace
{
/// Asks what providing the file asks, without making it.
Value LookFor(const UserFile& file)
{
    if (!Exists(QnFileName{file.path}))
        Exists(QnFileName{file.installedDefault});
    return file.path.ToStdString();
}

/// A stored value on one line: of a list, every text. The NULs that end it are not part of what it says.
std::string OnOneLine(const std::string& held)
{
    std::string text;
    const std::size_t end = held.find_last_not_of('\0') + 1; // npos + 1 is 0
    for (const char character : held.substr(0, end))
        text += character == '\0' ? std::string{", "} : std::string{character};
    return text.empty() ? "(empty)" : Printable(text);
}
} // namespace

std::string Shown(const Answer& answer)
{
    if (!answer.failure.empty())
        return Coloured("failed: " + Printable(answer.failure), Colour::Bad);
    const auto* const list = std::get_if<std::vector<std::string>>(&answer.value);
    const std::string text = list ? fmt::format("{}", fmt::join(*list, " ")) : ToText(answer.value);
    if (text.empty())
        return "(empty)";
    const std::string existence = answer.exists.value_or(true) ? "[exists]" : Coloured("[missing]", Colour::Warning);
    return Printable(text) + (answer.exists ? "  " + existence : "");
}

std::string Shown(const Source& source)
{
    if (!source.problem.empty())
        return Coloured("[" + source.problem + "]", Colour::Warning);
    if (!source.held)
        return source.kind == Source::Kind::Environment ? "[not set]" : "[missing]";
    if (source.kind == Source::Kind::Path || source.kind == Source::Kind::RegistryKey)
        return "[exists]";
    return "= " + OnOneLine(*source.held);
}

Answer AskFor(const Operation& operation, bool provide)
{
    Answer answer{&operation, {}, {}, {}, {}};
    trace = &answer.trace; // where the library notes what it asks
    try
    {
        answer.value = operation.userFile && !provide ? LookFor(operation.userFile()) : operation.ask();
    }
    catch (const std::exception& failure)
    {
        answer.failure = failure.what();
    }
    trace = nullptr;
    if (answer.failure.empty() && (operation.kind == Kind::Directory || operation.kind == Kind::File))
        answer.exists = QnFileName::DoesPathExist(QnFileName{std::get<std::string>(answer.value)}.GetName());
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
    const auto toText = [](const auto& held)
    {
        if constexpr (std::is_same_v<decltype(held), const std::vector<std::string>&>)
            return fmt::format("{}", fmt::join(held, "\n"));
        else
            return fmt::format("{}", held);
    };
    return std::visit(toText, value);
}

std::string Format(const std::vector<Answer>& answers)
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
            table += (table.empty() ? "" : "\n") + Coloured(operation.className, Colour::Heading) + "\n";
        className = operation.className;
        table += fmt::format("  {:<{}}  {}\n", operation.name, width, Shown(answer));
    }
    return table;
}

std::string Format(const Trace& trace)
{
    std::string text;
    for (const Source& source : trace)
    {
        const std::string shown = Shown(source);
        text += fmt::format("  {} {}{}{}\n", source.decided ? Coloured("*", Colour::Good) : " ",
                            Printable(source.place), shown.starts_with('=') ? " " : "  ", shown);
    }
    return text;
}

std::string Explain(const Answer& answer)
{
    const bool isDecided = std::ranges::any_of(answer.trace, &Source::decided);
    return Coloured(answer.operation->name, Colour::Heading) + ": " + Shown(answer) +
           (answer.trace.empty() ? "\nFixed: nothing was asked.\n"
            : isDecided          ? "\nAsked, in this order (* decided):\n"
                                 : "\nAsked, in this order (none held anything: the default):\n") +
           Format(answer.trace);
}
} // namespace FraxoInfo
