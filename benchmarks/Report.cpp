#include "Report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <map>
#include <string_view>

#include <sys/utsname.h>

#include "IniFile.h"
#include "SettingsStore.h"

namespace Benchmarks
{
namespace
{
using Row = std::vector<std::string>;

void AppendRow(std::string& text, const Row& cells)
{
    for (const std::string& cell : cells)
        text += "| " + cell + ' ';
    text += "|\n";
}

void AppendHeader(std::string& text, const Row& cells)
{
    AppendRow(text, cells);
    AppendRow(text, Row(cells.size(), "---"));
}

/// The amounts of one task, in the order in which they were measured.
struct TaskResults
{
    std::string task;
    Row subjects;
    std::vector<double> amounts;
};

std::vector<TaskResults> ByTask(const Results& results)
{
    std::vector<TaskResults> tasks;
    for (const Result& result : results)
    {
        auto found = std::ranges::find(tasks, result.task, &TaskResults::task);
        if (found == tasks.end())
            found = tasks.insert(tasks.end(), TaskResults{result.task, {}, {}});
        found->subjects.push_back(result.subject);
        found->amounts.push_back(result.amount);
    }
    return tasks;
}

/// A number of three digits.
std::string Short(double number, const char* unit)
{
    std::array<char, 32> text{};
    const int decimals = number < 10 ? 2 : number < 100 ? 1 : 0;
    std::snprintf(text.data(), text.size(), "%.*f%s", decimals, number, unit);
    return text.data();
}

std::string Processor()
{
    std::ifstream information{"/proc/cpuinfo"};
    for (std::string line; std::getline(information, line);)
    {
        if (line.starts_with("model name"))
            return line.substr(line.find(':') + 2);
    }
    return "unknown processor";
}

std::string Today()
{
    const std::time_t now = std::time(nullptr);
    std::array<char, 16> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d", std::gmtime(&now));
    return text.data();
}

template<class Kinds>
void AppendVersions(std::string& text, const Kinds& kinds)
{
    for (const auto& kind : kinds)
    {
        if (!kind.version.empty())
            text += ", " + kind.name + ' ' + kind.version;
    }
}

std::string FormatOutcomes(const std::vector<Outcome>& outcomes)
{
    std::string text;
    AppendHeader(text, {"what", "measured", "to reach", ""});
    for (const Outcome& outcome : outcomes)
    {
        const char* const verdict = outcome.isReached        ? "reached"
                                    : !outcome.isWithinNoise ? "**missed**"
                                    : outcome.isKnown        ? "out of reach, see below"
                                                             : "within noise";
        AppendRow(text, {outcome.task, outcome.measured, outcome.reach, verdict});
    }
    return text;
}

/// The subjects that need most, one below the other.
void AppendRanking(std::string& text, const TaskResults& task, std::string (*format)(double))
{
    constexpr std::size_t most = 10;
    std::multimap<double, std::string, std::greater<>> ranking;
    for (std::size_t i = 0; i < task.subjects.size(); ++i)
        ranking.emplace(task.amounts[i], task.subjects[i]);
    AppendHeader(text, {"the slowest of " + std::to_string(ranking.size()) + ": " + task.task, ""});
    std::size_t place = 0;
    for (const auto& [amount, subject] : ranking)
    {
        if (place++ < most)
            AppendRow(text, {subject, format(amount)});
    }
}

/// What each subject needs for each task: a table for the tasks that have the same subjects.
std::string FormatTables(const Results& results, std::string (*format)(double))
{
    constexpr std::size_t mostColumns = 12;
    const std::vector<TaskResults> tasks = ByTask(results);
    std::string text;
    const Row* subjects = nullptr;
    for (const TaskResults& task : tasks)
    {
        const bool isNewTable = !subjects || *subjects != task.subjects;
        if (isNewTable && subjects)
            text += '\n';
        subjects = &task.subjects;
        if (task.subjects.size() > mostColumns)
        {
            AppendRanking(text, task, format);
            continue;
        }
        Row row{""};
        row.insert(row.end(), task.subjects.begin(), task.subjects.end());
        if (isNewTable)
            AppendHeader(text, row);
        row = {task.task};
        for (const double amount : task.amounts)
            row.push_back(format(amount));
        AppendRow(text, row);
    }
    return text;
}

std::string FormatTime(double nanoseconds)
{
    for (const char* const unit : {" ns", " us", " ms"})
    {
        if (nanoseconds < 1000)
            return Short(nanoseconds, unit);
        nanoseconds /= 1000;
    }
    return Short(nanoseconds, " s");
}

std::string FormatCount(double count)
{
    for (const char* const unit : {"", " thousand"})
    {
        if (count < 1000)
            return Short(count, unit);
        count /= 1000;
    }
    return Short(count, " million");
}

std::string Provenance()
{
    utsname system{};
    ::uname(&system);
    std::string text = "Measured on " + Today() + ": " + Processor() + ", " + system.sysname + ' ' + system.release +
                       ", g++ " + __VERSION__;
    AppendVersions(text, IniReaderKinds());
    AppendVersions(text, SettingsStoreKinds());
    return text + ".\n";
}

std::string Section(const char* title, const Results& results, std::string (*format)(double))
{
    return results.empty() ? "" : std::string{"\n## "} + title + "\n\n" + FormatTables(results, format);
}
} // namespace

std::string Format(const Report& report)
{
    const std::string figures = report.outcomes.empty() ? "" : "\n## Figures\n\n" + FormatOutcomes(report.outcomes);
    return Provenance() + figures + Section("Times", report.times, FormatTime) +
           Section("Instructions outside the kernel", report.instructions, FormatCount) +
           Section("Sizes in bytes", report.sizes, FormatCount);
}
} // namespace Benchmarks
