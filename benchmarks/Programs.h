#pragma once

#include <string>
#include <vector>

namespace Benchmarks
{
/// This program's file.
std::string OwnPath();

/// Runs a program to its end and returns its exit status.
int Run(const std::vector<std::string>& command);
} // namespace Benchmarks
