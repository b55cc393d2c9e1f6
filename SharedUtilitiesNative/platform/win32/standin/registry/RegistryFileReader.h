#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <Platform/Win32.h>

namespace Quenlor::StandIn::Registry
{
/// What a registry file asks for, in the order of its lines. Paths are relative to `root`, one of the predefined keys,
/// have single backslashes between their levels, and are legal (RegistryPath.h). The views live for the call alone.
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
    std::size_t line = 0; ///< Of the first line, counted from 1.
    std::string reason;   ///< English, for people.
    std::string text;     ///< The lines themselves in UTF-8, as they stand in the file but without the last line's end.
};

inline constexpr std::size_t MaxProblems = 100; ///< A file of nothing else must not cost many times its size.

struct RegistryFileResult
{
    bool isRegistryFile = false; ///< False when the first line is no header: then nothing was handed to the handler.
    std::vector<RegistryFileProblem> problems; ///< The first MaxProblems.
    std::size_t problemCount = 0;              ///< Of all.
    std::string skipped; ///< All lines that were skipped, the first ones with their reasons in comments above them.
};

enum class RegistryFileDialect
{
    Import, ///< As Windows imports: text in hexadecimal form gets the final NUL that it lacks.
    Hive    ///< Data are taken exactly as they are written.
};

/// Reads a registry file, REGEDIT4 or version 5.00, UTF-16LE or UTF-8, and hands its contents to `handler`. Malformed
/// lines are skipped and reported; all others are kept.
RegistryFileResult ReadRegistryFile(std::string_view content, RegistryFileDialect dialect,
                                    RegistryFileHandler& handler);
} // namespace Quenlor::StandIn::Registry
