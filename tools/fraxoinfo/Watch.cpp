#include "Watch.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

#include <fmt/chrono.h>

#include "Terminal.h"

namespace FraxoInfo
{
std::string Changes(const std::vector<Answer>& before, const std::vector<Answer>& after, const std::string& time)
{
    std::string text;
    for (std::size_t i = 0; i < after.size(); ++i)
    {
        const std::string old = Shown(before[i]);
        const std::string now = Shown(after[i]);
        if (old == now)
            continue;
        text += fmt::format("{}  {}: {} -> {}\n", time, Coloured(after[i].operation->name, Colour::Heading), old, now);
        for (const Source& source : after[i].trace)
        {
            const auto isSame = [&](const Source& other)
            { return source.place == other.place && source.held == other.held && source.problem == other.problem; };
            if (std::ranges::none_of(before[i].trace, isSame))
                text += fmt::format("          {} {}\n", Printable(source.place), Shown(source));
        }
    }
    return text;
}

void Watch(const std::vector<const Operation*>& operations)
{
    using Clock = std::chrono::steady_clock;
    for (std::vector<Answer> before;;)
    {
        const Clock::time_point start = Clock::now();
        Quenlor::Fraxo::SharedUtilities::Native::ForgetLanguages();
        std::vector<Answer> after;
        after.reserve(operations.size());
        for (const Operation* const operation : operations)
            after.push_back(AskFor(*operation, false));
        if (!before.empty())
            fmt::print("{}", Changes(before, after, fmt::format("{:%H:%M:%S}", fmt::localtime(std::time(nullptr)))));
        before = std::move(after);
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
            return;
        constexpr std::chrono::milliseconds shortest{500};
        constexpr int share = 200; // so that it costs half a percent of a processor at most
        std::this_thread::sleep_for(std::max<Clock::duration>(shortest, share * (Clock::now() - start)));
    }
}
} // namespace FraxoInfo
