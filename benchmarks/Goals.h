#pragma once

#include <string>
#include <vector>

#include "Results.h"

namespace Benchmarks
{
/// A figure to reach, and what was measured.
struct Outcome
{
    std::string task;
    std::string measured;
    std::string reach;
    bool isReached = false; ///< Exactly.
    bool isWithinNoise =
        false;            ///< Not worse than reached, or than is known, by what two runs of the same program differ in.
    bool isKnown = false; ///< That it is out of reach.
};

/// Adds what follows from other results: sums, and how cost grows with size.
void Derive(Results& results);

/// One row for each figure of which all was measured.
std::vector<Outcome> Compare(const Results& results);
} // namespace Benchmarks
