#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Benchmarks
{
/// What is measured, as one who compares sees it.
enum class Role
{
    Ours,
    Peer,  ///< What a user would pick instead.
    Floor, ///< What nobody who does that work can avoid.
};

using Operation = std::function<void()>;

/// One subject at one task. Subjects of the same task are compared.
struct Measurement
{
    std::string task;
    std::string subject;
    Role role;
    std::function<Operation()> begin; ///< Makes everything ready, before each repetition; what it returns is timed.
    int times = 1;                    ///< How often one call of the operation does the task.

    std::string Name() const { return task + '/' + subject; }
};

using Measurements = std::vector<Measurement>;

// What each area measures.
void AddIniFiles(Measurements& measurements);
void AddSettings(Measurements& measurements);
void AddGetters(Measurements& measurements);
void AddProgramStart(Measurements& measurements);

/// Keeps the compiler from dropping a result that nobody looks at.
void Use(std::size_t result);
} // namespace Benchmarks
