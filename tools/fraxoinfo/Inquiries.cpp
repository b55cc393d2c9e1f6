#include "Inquiries.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "Report.h"

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

/// Whether `part` stands in `text` with nothing of a word before or behind it: "de" is no part of "Model".
bool IsPartOf(std::string_view text, std::string_view part)
{
    const auto isWord = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; };
    for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1))
    {
        const std::size_t end = at + part.length();
        if ((at == 0 || !isWord(text[at - 1])) && (end == text.length() || !isWord(text[end])))
            return true;
    }
    return false;
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
    { return !TextOf(inquiry).empty() && IsPartOf(answer, TextOf(inquiry)); };
    const auto holdsAnything = [](const Inquiry& inquiry)
    { return !TextOf(inquiry).empty() || (inquiry.source == Inquiry::Source::RegistryKey && inquiry.held); };
    const Inquiry* const decisive = last(isInAnswer);
    return decisive ? decisive : last(holdsAnything);
}

std::string FormatInquiries(const std::vector<Inquiry>& inquiries, const Inquiry* decisive)
{
    std::string text;
    for (const Inquiry& inquiry : inquiries)
        text.append(&inquiry == decisive ? "  * " : "    ").append(Describe(inquiry)).append("\n");
    return text;
}
} // namespace FraxoInfo
