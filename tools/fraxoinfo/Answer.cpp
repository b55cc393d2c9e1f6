#include "Answer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <exception>

#include <Quenlor/QnFileName.h>

#include "Terminal.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;
using Quenlor::QnFileName;

namespace FraxoInfo
{
namespace
{
/// Lets the library note what it asks for one answer.
class Listening final
{
public:
    explicit Listening(Trace& sources) { trace = &sources; }
    ~Listening() { trace = nullptr; }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;
};

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
    const std::string text = list ? Join(*list, " ") : ToText(answer.value);
    if (text.empty())
        return "(empty)";
    std::string shown = Printable(text);
    if (answer.exists)
        shown += "  " + (*answer.exists ? "[exists]" : Coloured("[missing]", Colour::Warning));
    return shown;
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
    try
    {
        const Listening listening{answer.trace};
        answer.value = operation.userFile && !provide ? LookFor(operation.userFile()) : operation.ask();
    }
    catch (const std::exception& failure)
    {
        answer.failure = failure.what();
    }
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
    struct
    {
        std::string operator()(const std::string& text) const { return text; }
        std::string operator()(bool flag) const { return flag ? "true" : "false"; }
        std::string operator()(std::int64_t number) const { return std::to_string(number); }
        std::string operator()(double number) const // the fewest digits
        {
            std::array<char, 32> digits;
            return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
        }
        std::string operator()(const std::vector<std::string>& list) const { return Join(list, "\n"); }
    } toText;
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

std::string Format(const Trace& trace)
{
    std::string text;
    for (const Source& source : trace)
    {
        const std::string shown = Shown(source);
        text.append(source.decided ? "  " + Coloured("*", Colour::Good) + " " : "    ")
            .append(Printable(source.place))
            .append(shown.starts_with('=') ? " " : "  ")
            .append(shown)
            .append("\n");
    }
    return text;
}

std::string Explain(const Answer& answer)
{
    const std::string text = Coloured(answer.operation->name, Colour::Heading) + ": " + Shown(answer) + "\n";
    if (answer.trace.empty())
        return text + "Fixed: nothing was asked.\n";
    const bool isDecided = std::ranges::any_of(answer.trace, &Source::decided);
    return text + "Asked, in this order (" + (isDecided ? "* decided" : "none held anything: the default") + "):\n" +
           Format(answer.trace);
}
} // namespace FraxoInfo
