#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <Platform/Win32.h>

#include "registry/Key.h"

namespace Quenlor::StandIn::Registry
{
/// What a registry file asks for, in the order of its lines. Paths are relative to `root`, one of the predefined keys,
/// have single backslashes between their levels, and are legal (RegistryPath.h). Data are exactly as they are written.
/// The views are valid only during the call.
class RegistryFileHandler
{
public:
    virtual ~RegistryFileHandler() = default;

    /// The values that follow belong to this key. @return false to have the key and those values skipped as a problem.
    virtual bool BeginKey(HKEY root, std::string_view path) = 0;
    /// Never called with an empty path. @return false to have the line skipped as a problem.
    virtual bool DeleteKey(HKEY root, std::string_view path) = 0;
    virtual void SetValue(std::string_view name, DWORD type, std::string_view data) = 0;
    virtual void DeleteValue(std::string_view name) = 0;
};

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
    bool isRegistryFile = false; ///< False when the first line is not a header: then the handler was not called.
    std::vector<RegistryFileProblem> problems; ///< The first MaxProblems.
    std::size_t problemCount = 0;              ///< Of all.
    std::string skipped; ///< All lines that were skipped, the first ones with their reasons in comments above them.
};

/// Reads a registry file, REGEDIT4 or version 5.00, UTF-16LE or UTF-8, and hands its contents to `handler`. Malformed
/// lines are skipped and reported; all others are kept.
RegistryFileResult ReadRegistryFile(std::string_view content, RegistryFileHandler& handler);

/// The same; makes the changes to the keys of one root. Those of other roots are skipped as problems.
RegistryFileResult ReadRegistryFile(std::string_view content, HKEY root, Key& tree);
} // namespace Quenlor::StandIn::Registry
