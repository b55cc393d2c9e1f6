#include "Why.h"

#include <utility>

#include "Colour.h"

namespace FraxoInfo
{
Explanation Explain(const Operation& operation)
{
    const Recording recording;
    Answer answer = AskFor(operation, false);
    return {std::move(answer), recording.Inquiries()};
}

std::string FormatExplanation(const Explanation& explanation)
{
    const Answer& answer = explanation.answer;
    std::string text = Coloured(answer.operation->name, Colour::Heading) + ": " + Shown(answer) + "\n";
    if (explanation.inquiries.empty())
        return text + "Fixed: nothing was asked.\n";
    const Inquiry* const decisive = Decisive(explanation.inquiries, ToText(answer.value));
    text.append("Asked, in this order (")
        .append(decisive ? "* decided" : "none held anything: the default")
        .append("):\n");
    return text + FormatInquiries(explanation.inquiries, decisive);
}
} // namespace FraxoInfo
