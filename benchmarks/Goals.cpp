#include "Goals.h"

#include <algorithm>
#include <cstdio>

namespace Benchmarks
{
namespace
{
enum class Bound
{
    AtLeast, ///< So many times as fast as the other.
    AtMost,  ///< So many times what the other needs.
};

constexpr const char* Getter = "getter";

struct Goal
{
    const char* task;
    const char* against; ///< A subject's name, or one of the two below.
    Bound bound;
    double limit;
    double known = limit; ///< What is reached where the limit is not; performance.md.in says why. To be kept at least.
};

constexpr const char* Peers = "the fastest peer";
constexpr const char* Floor = "the floor";

constexpr Goal Goals[] = {
    {"load 2 KB", Peers, Bound::AtLeast, 2.5},
    {"load 2 KB", Floor, Bound::AtMost, 1.4},
    {"load 2 KB, CRLF", Peers, Bound::AtLeast, 2.5},
    {"load 2 KB, CRLF", Floor, Bound::AtMost, 1.4},
    {"load 100 KB", Peers, Bound::AtLeast, 12, 7},
    {"load 100 KB, CRLF", Peers, Bound::AtLeast, 12, 7},
    {"load 10 MB", Peers, Bound::AtLeast, 9, 7},
    {"load 10 MB, CRLF", Peers, Bound::AtLeast, 9, 7},
    {"memory of 10 MB loaded", Floor, Bound::AtMost, 1.8},
    {"load 100,000 keys in one section", Peers, Bound::AtLeast, 8},
    {"load 100,000 keys in one section, CRLF", Peers, Bound::AtLeast, 8},
    {"LoadSection, middle of 10 MB", Floor, Bound::AtMost, 1.1},
    {"GetStringValue, 2 KB", Peers, Bound::AtLeast, 2, 1.7},
    {"GetStringValue, 10 MB", Peers, Bound::AtLeast, 3},
    {"IsDevFeatureEnabled", Floor, Bound::AtMost, 1.5, 1.8},
    {"read a setting", Floor, Bound::AtMost, 1.5},
    {"read a setting", "SQLite", Bound::AtLeast, 2, 1.4},
    {"write a setting of 100", Floor, Bound::AtMost, 1.5},
    {"write a setting of 10000", Floor, Bound::AtMost, 4},
    {"all getters", Floor, Bound::AtMost, 1000},
    {"the slowest getter", Floor, Bound::AtMost, 25},
    {"start a program", Floor, Bound::AtMost, 1.2},
    {"size of the shared objects", Floor, Bound::AtMost, 1},
    {"size of the DLLs", Floor, Bound::AtMost, 3},
    {"growth of loading, 1 MB to 10 MB", Floor, Bound::AtMost, 1.5},
    {"growth of reading a hive, 10000 to 100000 values", Floor, Bound::AtMost, 1.5, 2.3},
    {"growth of writing a hive, 10000 to 100000 values", Floor, Bound::AtMost, 1.5},
};

/// How cost grows when the work becomes ten times as much.
struct Growth
{
    const char* task;
    const char* smaller;
    const char* larger;
};

constexpr Growth Growths[] = {
    {"growth of loading, 1 MB to 10 MB", "load 1 MB", "load 10 MB"},
    {"growth of reading a hive, 10000 to 100000 values", "read a changed hive of 10000",
     "read a changed hive of 100000"},
    {"growth of writing a hive, 10000 to 100000 values", "write a setting of 10000", "write a setting of 100000"},
};

// A ratio may miss its limit by what two runs of the same program differ in.
constexpr double Noise = 0.15;

void DeriveGetters(Results& results)
{
    double sum = 0;
    const Result* slowest = nullptr;
    for (const Result& result : results)
    {
        if (result.task != Getter || result.role != Role::Ours)
            continue;
        sum += result.amount;
        if (!slowest || result.amount > slowest->amount)
            slowest = &result;
    }
    const Result* const stat = FindBest(results, Getter, Role::Floor);
    if (!slowest || !stat)
        return;
    const Results derived{{"all getters", "all getters", Role::Ours, sum},
                          {"all getters", "a stat call", Role::Floor, stat->amount},
                          {"the slowest getter", slowest->subject, Role::Ours, slowest->amount},
                          {"the slowest getter", "a stat call", Role::Floor, stat->amount}};
    results.insert(results.end(), derived.begin(), derived.end());
}

void DeriveGrowth(Results& results)
{
    for (const Growth& growth : Growths)
    {
        const Result* const smaller = FindBest(results, growth.smaller, Role::Ours);
        const Result* const larger = FindBest(results, growth.larger, Role::Ours);
        if (!smaller || !larger)
            continue;
        const Results derived{{growth.task, growth.larger, Role::Ours, larger->amount},
                              {growth.task, "ten times the smaller", Role::Floor, 10 * smaller->amount}};
        results.insert(results.end(), derived.begin(), derived.end());
    }
}

std::string Times(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, number < 10 ? "%.2f x" : "%.0f x", number);
    return text;
}

Outcome Judge(const Goal& goal, const Result& ours, const Result& other)
{
    const bool isAtLeast = goal.bound == Bound::AtLeast;
    const double ratio = isAtLeast ? other.amount / ours.amount : ours.amount / other.amount;
    const auto excess = [&](double limit) { return isAtLeast ? limit / ratio : ratio / limit; };
    return {.task = goal.task,
            .measured = Times(ratio) + (isAtLeast ? " as fast as " : " of ") + other.subject,
            .reach = (isAtLeast ? "at least " : "at most ") + Times(goal.limit),
            .isReached = excess(goal.limit) <= 1,
            .isWithinNoise = excess(goal.known) <= 1 + Noise,
            .isKnown = goal.known != goal.limit};
}
} // namespace

void Derive(Results& results)
{
    DeriveGetters(results);
    DeriveGrowth(results);
}

std::vector<Outcome> Compare(const Results& results)
{
    std::vector<Outcome> outcomes;
    for (const Goal& goal : Goals)
    {
        const Result* const ours = FindBest(results, goal.task, Role::Ours);
        const Result* const other = goal.against == Peers   ? FindBest(results, goal.task, Role::Peer)
                                    : goal.against == Floor ? FindBest(results, goal.task, Role::Floor)
                                                            : Find(results, goal.task, goal.against);
        if (ours && other)
            outcomes.push_back(Judge(goal, *ours, *other));
        else
            outcomes.push_back({.task = goal.task, .measured = "nothing", .reach = ""});
    }
    return outcomes;
}
} // namespace Benchmarks
