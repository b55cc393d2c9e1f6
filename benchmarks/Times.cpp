#include <algorithm>
#include <cstdio>
#include <map>

#include <benchmark/benchmark.h>

#include "Amounts.h"

namespace Benchmarks
{
namespace
{
/// Keeps the best time of each measurement: what disturbs a run only makes it longer.
class Collector final : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        std::fputc('.', stderr);
        for (const Run& run : runs)
        {
            if (run.run_type != Run::RT_Iteration)
                continue;
            const double time = run.real_accumulated_time / static_cast<double>(run.iterations) * 1e9;
            double& best = m_best.try_emplace(run.run_name.function_name, time).first->second;
            best = std::min(best, time);
        }
    }

    const double* Best(const std::string& name) const
    {
        const auto found = m_best.find(name);
        return found == m_best.end() ? nullptr : &found->second;
    }

private:
    std::map<std::string, double> m_best;
};

void Run(const Measurement& measurement, benchmark::State& state)
{
    const Operation operation = measurement.begin();
    operation(); // all is measured warm
    for ([[maybe_unused]] const auto iteration : state)
        operation();
}
} // namespace

void Use(std::size_t result)
{
    benchmark::DoNotOptimize(result);
}

Results MeasureTimes(const Measurements& measurements)
{
    benchmark::ClearRegisteredBenchmarks();
    for (const Measurement& measurement : measurements)
    {
        const auto run = [&measurement](benchmark::State& state) { Run(measurement, state); };
        benchmark::RegisterBenchmark(measurement.Name().c_str(), run)->UseRealTime();
    }
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    std::fputc('\n', stderr);
    Results results;
    for (const Measurement& measurement : measurements)
    {
        if (const double* const best = collector.Best(measurement.Name()))
            results.push_back({measurement.task, measurement.subject, measurement.role, *best / measurement.times});
    }
    return results;
}
} // namespace Benchmarks
