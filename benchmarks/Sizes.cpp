#include <filesystem>
#include <fstream>
#include <limits>
#include <stdexcept>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Amounts.h"
#include "Files.h"
#include "IniFile.h"

namespace Benchmarks
{
namespace
{
/// A line of this process's status in bytes.
double StatusInBytes(const std::string& name)
{
    std::ifstream status{"/proc/self/status"};
    for (std::string word; status >> word; status.ignore(std::numeric_limits<std::streamsize>::max(), '\n'))
    {
        double kilobytes = 0;
        if (word == name + ':' && status >> kilobytes)
            return kilobytes * 1024;
    }
    return 0;
}

/// By how much `action` makes a process grow at its peak.
template<class Action>
double Growth(Action action)
{
    void* const shared = ::mmap(nullptr, sizeof(double), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED)
        throw std::runtime_error("no memory to share");
    double& growth = *static_cast<double*>(shared);
    const pid_t child = ::fork();
    if (child == 0)
    {
        const double before = StatusInBytes("VmRSS");
        action();
        growth = StatusInBytes("VmHWM") - before;
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
    const double result = growth;
    ::munmap(shared, sizeof(double));
    return result;
}
} // namespace

Results MeasureMemory()
{
    const std::string task = "memory of 10 MB loaded";
    const std::string path = Generate(Workplace(), LargeIniFile(), LineEnd::Lf);
    Results results;
    for (const IniReaderKind& kind : IniReaderKinds())
        results.push_back({task, kind.name, kind.role, Growth([&] { Use(kind.load(path) != nullptr); })});
    results.push_back({task, "the file", Role::Floor, static_cast<double>(std::filesystem::file_size(path))});
    return results;
}

Results MeasureFiles(const std::string& folder)
{
    Result sharedObjects{"size of the shared objects", "both libraries", Role::Ours, 0};
    Result dlls{"size of the DLLs", "both libraries", Role::Ours, 0};
    Results results;
    for (const auto& entry : std::filesystem::directory_iterator{folder})
    {
        const std::string name = entry.path().filename();
        const auto size = static_cast<double>(entry.file_size());
        Result& sum = name.ends_with(".dll") ? dlls : sharedObjects;
        sum.amount += size;
        results.push_back({"size", name, Role::Ours, size});
    }
    constexpr double megabyte = 1024.0 * 1024.0;
    for (const Result& sum : {sharedObjects, dlls})
    {
        if (sum.amount == 0)
            continue; // was not built
        results.push_back(sum);
        results.push_back({sum.task, "a megabyte", Role::Floor, megabyte});
    }
    return results;
}
} // namespace Benchmarks
