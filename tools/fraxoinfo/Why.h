#pragma once

#include <string>
#include <vector>

#include "Inquiries.h"
#include "Report.h"

namespace FraxoInfo
{
/// An answer and what the library asked the machine for it.
struct Explanation
{
    Answer answer;
    std::vector<Inquiry> inquiries;
};

/// Asks for one operation and listens. A user's file is not made: that it, or else its installed default, is there is
/// asked as an application would.
Explanation Explain(const Operation& operation);

std::string FormatExplanation(const Explanation& explanation);
} // namespace FraxoInfo
