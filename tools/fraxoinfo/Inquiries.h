#pragma once

#include <string>
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

/// The place and what it held, on one line without an end.
std::string Describe(const Inquiry& inquiry);
} // namespace FraxoInfo
