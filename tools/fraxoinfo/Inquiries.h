#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/Trace.h"

namespace FraxoInfo
{
using Quenlor::Fraxo::SharedUtilities::Native::Inquiry;

/// Keeps what the library asks the machine, as long as it lives. One at a time.
class Recording final
{
public:
    Recording();
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    const std::vector<Inquiry>& Inquiries() const { return m_inquiries; }

private:
    std::vector<Inquiry> m_inquiries;
};

/// The inquiry that decided: the last one whose text the answer holds, else the last one that held anything.
/// @return null when none held anything: then a default is the answer
const Inquiry* Decisive(const std::vector<Inquiry>& inquiries, std::string_view answer);

/// A line for each inquiry: the place and what it held. `*` stands before the decisive one, which may be null.
std::string FormatInquiries(const std::vector<Inquiry>& inquiries, const Inquiry* decisive);
} // namespace FraxoInfo
