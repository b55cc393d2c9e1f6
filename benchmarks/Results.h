#pragma once

#include <string>
#include <vector>

#include "Measurement.h"

namespace Benchmarks
{
/// What one subject needs for one task: nanoseconds, or bytes where the task is a size.
struct Result
{
    std::string task;
    std::string subject;
    Role role;
    double amount;
};

using Results = std::vector<Result>;

/// Null when it was not measured.
const Result* Find(const Results& results, const std::string& task, const std::string& subject);

/// Puts the lesser amount of both into `results`.
void KeepBest(Results& results, const Results& others);

/// The least amount of that role.
const Result* FindBest(const Results& results, const std::string& task, Role role);
} // namespace Benchmarks
