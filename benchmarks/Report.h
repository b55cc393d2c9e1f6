#pragma once

#include <string>
#include <vector>

#include "Goals.h"
#include "Results.h"

namespace Benchmarks
{
/// All that was measured.
struct Report
{
    std::vector<Outcome> outcomes;
    Results times;        ///< In nanoseconds.
    Results sizes;        ///< In bytes.
    Results instructions; ///< Their number.
};

/// In Markdown, with the machine, the day and the versions.
std::string Format(const Report& report);
} // namespace Benchmarks
