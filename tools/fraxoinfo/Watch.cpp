#include "Watch.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

#include "Terminal.h"

namespace FraxoInfo
{
namespace
{
std::vector<Answer> Ask(const std::vector<const Operation*>& operations)
{
    Quenlor::Fraxo::SharedUtilities::Native::ForgetLanguages();
    std::vector<Answer> answers;
    answers.reserve(operations.size());
    for (const Operation* const operation : operations)
        answers.push_back(AskFor(*operation, false));
    return answers;
}

std::string TimeOfDay()
{
    const std::time_t now = std::time(nullptr);
    std::array<char, 16> text{};
    std::strftime(text.data(), text.size(), "%H:%M:%S", std::localtime(&now));
    return text.data();
}

bool IsSame(const Source& one, const Source& other)
{
    return one.place == other.place && one.held == other.held && one.problem == other.problem;
}
} // namespace

std::string Changes(const std::vector<Answer>& before, const std::vector<Answer>& after, const std::string& time)
{
    std::string text;
    for (std::size_t i = 0; i < after.size(); ++i)
    {
        const std::string old = Shown(before[i]);
        const std::string now = Shown(after[i]);
        if (old == now)
            continue;
        text += time + "  " + Coloured(after[i].operation->name, Colour::Heading) + ": " + old + " -> " + now + "\n";
        for (const Source& source : after[i].trace)
        {
            const auto isSame = [&](const Source& other) { return IsSame(source, other); };
            if (std::ranges::none_of(before[i].trace, isSame))
                text += "          " + Printable(source.place) + " " + Shown(source) + "\n";
        }
    }
    return text;
}

void Watch(const std::vector<const Operation*>& operations)
{
    using Clock = std::chrono::steady_clock;
    std::vector<Answer> before = Ask(operations);
    for (;;)
    {
        const Clock::time_point start = Clock::now();
        std::vector<Answer> after = Ask(operations);
        const std::string changes = Changes(before, after, TimeOfDay());
        std::fwrite(changes.data(), 1, changes.size(), stdout);
        before = std::move(after);
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
            return;
        constexpr std::chrono::milliseconds shortest{500};
        constexpr int share = 200; // so that it costs half a percent of a processor at most
        std::this_thread::sleep_for(std::max<Clock::duration>(shortest, share * (Clock::now() - start)));
    }
}
} // namespace FraxoInfo
