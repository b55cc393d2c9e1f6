#include <algorithm>
#include <istream>
#include <iterator>
#include <ostream>

#include "Failure.h"
#include "RegistryChanges.h"
#include "TextFile.h"
#include "Verbs.h"
#include "common/StoredText.h"
#include "registry/RegistryFileReader.h"

namespace FraxoReg
{
namespace
{
using Quenlor::StandIn::Registry::RegistryFileDialect;
using Quenlor::StandIn::Registry::RegistryFileProblem;
using Quenlor::StandIn::Registry::RegistryFileResult;

constexpr Switch Switches[] = {{"skip-errors"}, {"reg:32"}, {"reg:64"}};

constexpr std::string_view Help = R"(
fraxoreg IMPORT FileName [--skip-errors] [/reg:32 | /reg:64]

  FileName   The name of the registry file to import: one that Windows' registry
             editor or EXPORT wrote, UTF-16 or UTF-8, version 5.00 or REGEDIT4.
             - stands for the standard input.

  --skip-errors
             Imports the good lines of a file that has malformed ones, and
             tells which were left out; the return code is 2 then. Without it
             such a file is refused.

  /reg:32, /reg:64
             Accepted as on Windows. There is one view of the registry.

  All changes are made, or none when the return code is 1. Keys of
  HKEY_CLASSES_ROOT go to HKCU\Software\Classes if they exist there, else to
  HKLM\Software\Classes.

Examples:

  fraxoreg IMPORT AppBkUp.reg
    Imports registry entries from the file AppBkUp.reg

  fraxoreg EXPORT 'HKCU\Software\MyCo' - | ssh other fraxoreg IMPORT -
    Copies settings to another machine
)";

/// One line that says how far it is, on a terminal alone.
class ProgressLine final
{
public:
    explicit ProgressLine(const Console& console) : m_err{console.err}, m_isWanted{console.errIsTerminal} {}
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine()
    {
        if (m_isShown)
            m_err << "\r\x1b[K" << std::flush;
    }

    void Show(std::string_view activity, std::size_t values)
    {
        constexpr std::size_t step = 4096;
        if (!m_isWanted || values % step != 0)
            return;
        m_err << '\r' << activity << ": " << values << " values\x1b[K" << std::flush;
        m_isShown = true;
    }

private:
    std::ostream& m_err;
    bool m_isWanted;
    bool m_isShown = false;
};

std::string Counted(std::size_t count, const std::string& noun)
{
    return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

/// `FILE:LINE: reason: the line`, as far as the line is short.
std::string Described(const RegistryFileProblem& problem, const std::string& file)
{
    constexpr std::size_t longest = 60;
    std::string line = problem.text.substr(0, problem.text.find_first_of("\r\n"));
    if (line.size() > longest)
    {
        std::size_t end = longest;
        while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80) // not within a character
            --end;
        line.resize(end);
        line += "...";
    }
    return file + ':' + std::to_string(problem.line) + ": " + problem.reason + ": " + Tools::Printable(line) + '\n';
}

std::string Described(const std::vector<RegistryFileProblem>& problems, const std::string& file)
{
    constexpr std::size_t most = 20;
    std::string text;
    for (std::size_t i = 0; i < std::min(problems.size(), most); ++i)
        text += Described(problems[i], file);
    if (problems.size() > most)
        text += "... and " + Counted(problems.size() - most, "more line") + '\n';
    return text;
}

void RefuseUnlessGood(const RegistryFileResult& result, const std::string& file, bool skipErrors)
{
    if (!result.isRegistryFile)
        throw Failure{"The specified file is not a registry script.\nThe first line of " + file +
                      R"( has to be "Windows Registry Editor Version 5.00" or "REGEDIT4".)"};
    if (!skipErrors && !result.problems.empty())
        throw Failure{"Nothing was imported: " + file + " has " + Counted(result.problems.size(), "malformed line") +
                      ".\n" + Described(result.problems, file) +
                      "Correct the file, or import its other lines with --skip-errors."};
}

ExitStatus Run(const Arguments& arguments, const Console& console)
{
    const std::string& operand = arguments.Operand(0);
    const bool isStandardInput = operand == "-";
    const std::string file = isStandardInput ? "standard input" : operand;
    ChangeCounts counts;
    RegistryFileResult result;
    {
        ProgressLine line{console};
        ChangeList changes{[&line](std::string_view activity, std::size_t values) { line.Show(activity, values); }};
        result = ReadRegistryFile(isStandardInput ? std::string{std::istreambuf_iterator<char>{console.in}, {}}
                                                  : ReadTextFile(file),
                                  RegistryFileDialect::Import, changes);
        RefuseUnlessGood(result, file, arguments.Has("skip-errors"));
        counts = changes.Apply();
    }
    console.out << Completed << "Wrote " << Counted(counts.keysWritten, "key") << " and "
                << Counted(counts.valuesWritten, "value") << ", deleted " << Counted(counts.keysDeleted, "key")
                << " and " << Counted(counts.valuesDeleted, "value") << ".\n";
    if (result.problems.empty())
        return Success;
    console.err << "WARNING: " << Counted(result.problems.size(), "malformed line") << " left out.\n";
    for (const RegistryFileProblem& problem : result.problems)
        console.err << Described(problem, file);
    return Partly;
}
} // namespace

const Verb ImportVerb{"IMPORT", 1, Switches, Help, Run};
} // namespace FraxoReg
