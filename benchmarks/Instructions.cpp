#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>

#include "Amounts.h"
#include "Programs.h"

namespace Benchmarks
{
/// What valgrind counts. It looks for the name, which is why this is a function of its own and not static.
[[gnu::noinline]] void CountedCall(const Operation& operation);

void CountedCall(const Operation& operation)
{
    operation();
}

namespace
{
std::optional<double> Instructions(const Measurement& measurement)
{
    const std::string command = "valgrind --tool=callgrind --callgrind-out-file=/dev/null --collect-atstart=no "
                                "'--toggle-collect=Benchmarks::CountedCall*' '" +
                                OwnPath() + "' --call-twice '" + measurement.Name() + "' 2>&1";
    const std::unique_ptr<FILE, int (*)(FILE*)> output{::popen(command.c_str(), "r"), ::pclose};
    std::array<char, 256> line{};
    while (output && std::fgets(line.data(), static_cast<int>(line.size()), output.get()))
    {
        double count = 0;
        const char* const found = std::strstr(line.data(), "Collected :");
        if (found && std::sscanf(found, "Collected : %lf", &count) == 1)
            return count / measurement.times;
    }
    return {};
}
} // namespace

Results CountInstructions(const Measurements& measurements)
{
    const std::set<std::string> tasks{"load 2 KB", "load 100 KB", "GetStringValue, 2 KB", "read a setting",
                                      "IsDevFeatureEnabled"};
    Results results;
    for (const Measurement& measurement : measurements)
    {
        if (!tasks.contains(measurement.task))
            continue;
        if (const auto count = Instructions(measurement))
            results.push_back({measurement.task, measurement.subject, measurement.role, *count});
    }
    return results;
}

void CallTwice(const Measurements& measurements, const std::string& name)
{
    const auto found = std::ranges::find(measurements, name, &Measurement::Name);
    if (found == measurements.end())
        throw std::invalid_argument("there is no measurement '" + name + "'");
    const Operation operation = found->begin();
    operation();
    CountedCall(operation);
}
} // namespace Benchmarks
