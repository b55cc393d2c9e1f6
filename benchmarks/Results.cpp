#include "Results.h"

#include <algorithm>

namespace Benchmarks
{
namespace
{
template<class Predicate>
const Result* FindLeast(const Results& results, Predicate predicate)
{
    const Result* least = nullptr;
    for (const Result& result : results)
    {
        if (predicate(result) && (!least || result.amount < least->amount))
            least = &result;
    }
    return least;
}
} // namespace

void KeepBest(Results& results, const Results& others)
{
    for (Result& result : results)
    {
        if (const Result* const other = Find(others, result.task, result.subject))
            result.amount = std::min(result.amount, other->amount);
    }
}

const Result* Find(const Results& results, const std::string& task, const std::string& subject)
{
    return FindLeast(results, [&](const Result& result) { return result.task == task && result.subject == subject; });
}

const Result* FindBest(const Results& results, const std::string& task, Role role)
{
    return FindLeast(results, [&](const Result& result) { return result.task == task && result.role == role; });
}
} // namespace Benchmarks
