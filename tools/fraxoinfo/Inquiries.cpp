#include "Inquiries.h"

#include <utility>

#include "Report.h"

using Quenlor::Fraxo::SharedUtilities::Native::tracer;

namespace FraxoInfo
{
namespace
{
std::vector<Inquiry>* record = nullptr; // a tracer is a plain function
}

Recording::Recording()
{
    record = &m_inquiries;
    tracer = [](Inquiry inquiry) { record->push_back(std::move(inquiry)); };
}

Recording::~Recording()
{
    tracer = nullptr;
}

std::string Describe(const Inquiry& inquiry)
{
    const std::string place = Printable(inquiry.place);
    if (!inquiry.held)
        return place + "  [missing]";
    if (inquiry.source == Inquiry::Source::Path || inquiry.source == Inquiry::Source::RegistryKey)
        return place + "  [exists]";
    const std::string text = inquiry.held->c_str(); // without the NUL that ends a stored text
    return place + " = " + (text.empty() ? "(empty)" : Printable(text));
}
} // namespace FraxoInfo
