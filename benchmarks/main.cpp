// Measures the library beside what a user would pick instead, and beside the bare system calls.
//
//   Benchmarks [--benchmark_filter=REGEX ...]                    prints what the filter lets through
//   Benchmarks --report FORM FILE LIBRARIES                      measures everything, fails when a figure is missed,
//                                                                and writes FILE: FORM with what was measured in it

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Amounts.h"
#include "Files.h"
#include "Goals.h"
#include "IniFile.h"
#include "Programs.h"
#include "Report.h"
#include "SettingsStore.h"

namespace Benchmarks
{
const std::filesystem::path& Workplace()
{
    static const std::filesystem::path folder = "/var/tmp/fraxo-benchmarks";
    std::filesystem::create_directories(folder);
    return folder;
}

namespace
{
using Arguments = std::vector<std::string>;

Measurements AllMeasurements()
{
    Measurements all;
    AddIniFiles(all);
    AddSettings(all);
    AddGetters(all);
    AddProgramStart(all);
    return all;
}

int PrintSome()
{
    CheckIniReaders();
    CheckSettingsStores();
    Report report;
    report.times = MeasureTimes(AllMeasurements());
    std::fputs(Format(report).c_str(), stdout);
    return EXIT_SUCCESS;
}

std::string Filled(const std::string& form, const std::string& measured)
{
    constexpr std::string_view place = "@MEASURED@";
    std::ifstream stream{form};
    std::string text{std::istreambuf_iterator<char>{stream}, {}};
    const std::size_t found = text.find(place);
    if (found == text.npos)
        throw std::runtime_error(form + ": there is no " + std::string{place});
    return text.replace(found, place.size(), measured);
}

bool AreReached(const std::vector<Outcome>& outcomes)
{
    return std::ranges::all_of(outcomes, &Outcome::isWithinNoise);
}

/// Measures the times, again when a figure falls short: what disturbs a run only makes it longer.
void MeasureUntilReached(const Measurements& measurements, Report& report)
{
    constexpr int mostRounds = 3;
    report.times = MeasureTimes(measurements);
    for (int round = 1;; ++round)
    {
        Results all = report.times;
        all.insert(all.end(), report.sizes.begin(), report.sizes.end());
        Derive(all);
        report.outcomes = Compare(all);
        if (round == mostRounds || AreReached(report.outcomes))
            return;
        KeepBest(report.times, MeasureTimes(measurements));
    }
}

int ReportAll(const std::string& form, const std::string& file, const std::string& libraries)
{
    Report report;
    report.sizes = MeasureMemory(); // first: nothing has grown this process
    const Results files = MeasureFiles(libraries);
    report.sizes.insert(report.sizes.end(), files.begin(), files.end());
    CheckIniReaders();
    CheckSettingsStores();
    const Measurements measurements = AllMeasurements();
    MeasureUntilReached(measurements, report);
    report.instructions = CountInstructions(measurements);

    const std::string measured = Format(report);
    std::fputs(measured.c_str(), stdout);
    std::ofstream{file} << Filled(form, measured);
    return AreReached(report.outcomes) ? EXIT_SUCCESS : EXIT_FAILURE;
}

int Dispatch(const Arguments& arguments)
{
    if (arguments.size() == 4 && arguments[0] == "--report")
        return ReportAll(arguments[1], arguments[2], arguments[3]);
    if (arguments.size() == 2 && arguments[0] == "--call-twice")
        CallTwice(AllMeasurements(), arguments[1]);
    else if (arguments.size() == 5 && arguments[0] == "--write")
        WriteSetting(arguments[1], arguments[2], arguments[3], arguments[4]);
    else if (arguments.empty())
        return PrintSome();
    else
        throw std::invalid_argument("unknown arguments");
    return EXIT_SUCCESS;
}
} // namespace
} // namespace Benchmarks

int main(int argc, char** argv)
try
{
    benchmark::Initialize(&argc, argv); // takes its own arguments away
    return Benchmarks::Dispatch({argv + 1, argv + argc});
}
catch (const std::exception& error)
{
    std::fprintf(stderr, "Benchmarks: %s\n", error.what());
    return EXIT_FAILURE;
}
