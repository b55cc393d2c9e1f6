#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <Platform/Win32.h>

#include "registry/Key.h"

namespace Quenlor::StandIn::Registry
{
/// Lines that were skipped.
struct RegistryFileProblem
{
    std::size_t line = 0; ///< Number of the first line, from 1.
    std::string reason;   ///< English, for people.
    std::string text;     ///< The lines in UTF-8, as they are in the file but without the last line's end.
};

inline constexpr std::size_t MaxProblems = 100; ///< A file of nothing else must not cost many times its size.

struct RegistryFileResult
{
    bool isRegistryFile = false;               ///< False when the first line is not a header: then nothing was changed.
    std::vector<RegistryFileProblem> problems; ///< The first MaxProblems.
    std::size_t problemCount = 0;              ///< Of all.
    std::string skipped; ///< All lines that were skipped, the first ones with their reasons in comments above them.
};

/// Says below which key a key of the file is, and may change its path there. Null to have it skipped as a problem, with
/// its values. `root` is one of the predefined keys; the path has single backslashes between its levels and is legal
/// (RegistryPath.h).
using TreeOf = std::function<Key*(HKEY root, std::string& path)>;

enum class RegistryFileUse
{
    Hive,
    Import, ///< Text gets the NUL that it lacks, as on Windows.
};

/// Reads a registry file, REGEDIT4 or version 5.00, UTF-16LE or UTF-8, and makes the changes that it asks for in the
/// order of its lines. Malformed lines are skipped and reported; all others are kept.
RegistryFileResult ReadRegistryFile(std::string_view content, RegistryFileUse use, const TreeOf& treeOf);

/// The same for the keys of one root. Those of other roots are skipped as problems.
RegistryFileResult ReadRegistryFile(std::string_view content, HKEY root, Key& tree);
} // namespace Quenlor::StandIn::Registry
