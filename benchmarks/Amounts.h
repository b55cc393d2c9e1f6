#pragma once

#include <string>

#include "Results.h"

namespace Benchmarks
{
/// The best time of each measurement that the command line's filter lets through; their repetitions are mixed.
Results MeasureTimes(const Measurements& measurements);

/// The instructions outside the kernel of the shorter tasks, by valgrind; without it there are none.
Results CountInstructions(const Measurements& measurements);

/// What valgrind is run on: calls one measurement's operation twice, of which the second call counts.
void CallTwice(const Measurements& measurements, const std::string& name);

/// The memory that a large file takes at its peak. To be called before anything else has grown this process.
Results MeasureMemory();

/// The sizes of the stripped libraries in a folder, shared objects and DLLs.
Results MeasureFiles(const std::string& folder);
} // namespace Benchmarks
