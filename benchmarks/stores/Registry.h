#pragma once

#include <filesystem>

namespace Benchmarks
{
/// From now on the registry of this process lies in that folder.
void UseRegistry(const std::filesystem::path& folder);

/// The file of the user's hive in it.
std::filesystem::path UserHive(const std::filesystem::path& folder);
} // namespace Benchmarks
