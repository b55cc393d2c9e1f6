#include "Inquiries.h"

#include <algorithm>
#include <utility>

#include "Colour.h"
#include "Report.h"
#include "Words.h"

using Quenlor::Fraxo::SharedUtilities::Native::tracer;

namespace FraxoInfo
{
namespace
{
std::vector<Inquiry>* record = nullptr; // a tracer is a plain function

/// What was held, up to its first NUL, where readers of a text stop.
std::string_view TextOf(const Inquiry& inquiry)
{
    return inquiry.held ? std::string_view{inquiry.held->c_str()} : std::string_view{};
}

/// All that was held: of a list, every text. The NULs that end a stored value are no part of what it says.
std::string Shown(const std::string& held)
{
    std::string text;
    const std::size_t end = held.find_last_not_of('\0') + 1; // npos + 1 is 0
    for (const char character : held.substr(0, end))
        text += character == '\0' ? std::string{", "} : std::string{character};
    return text.empty() ? "(empty)" : Printable(text);
}

std::string Describe(const Inquiry& inquiry)
{
    const std::string place = Printable(inquiry.place);
    if (!inquiry.held)
        return place + (inquiry.source == Inquiry::Source::Environment ? "  [not set]" : "  [missing]");
    if (inquiry.source == Inquiry::Source::Path || inquiry.source == Inquiry::Source::RegistryKey)
        return place + "  [exists]";
    return place + " = " + Shown(*inquiry.held);
}
} // namespace

Recording::Recording()
{
    record = &m_inquiries;
    tracer = [](Inquiry inquiry) { record->push_back(std::move(inquiry)); };
}

Recording::~Recording()
{
    tracer = nullptr;
}

const Inquiry* Decisive(const std::vector<Inquiry>& inquiries, std::string_view answer)
{
    const auto last = [&](const auto& condition) -> const Inquiry*
    {
        const auto found = std::find_if(inquiries.rbegin(), inquiries.rend(), condition);
        return found == inquiries.rend() ? nullptr : &*found;
    };
    const auto isInAnswer = [&](const Inquiry& inquiry)
    { return FindWord(answer, TextOf(inquiry)) != std::string_view::npos; };
    const auto holdsAnything = [](const Inquiry& inquiry)
    { return !TextOf(inquiry).empty() || (inquiry.source == Inquiry::Source::RegistryKey && inquiry.held); };
    const Inquiry* const decisive = last(isInAnswer);
    return decisive ? decisive : last(holdsAnything);
}

std::string FormatInquiries(const std::vector<Inquiry>& inquiries, const Inquiry* decisive)
{
    std::string text;
    for (const Inquiry& inquiry : inquiries)
        text.append(&inquiry == decisive ? "  " + Coloured("*", Colour::Good) + " " : "    ")
            .append(Describe(inquiry))
            .append("\n");
    return text;
}
} // namespace FraxoInfo
