#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <Quenlor/Utf8String.h>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// Something on the machine that the library asked on the way to an answer.
struct Source
{
    enum class Kind
    {
        Environment,
        RegistryValue,
        RegistryKey, ///< Whether it is there.
        Path,        ///< Whether something is there.
        System,      ///< What the operating system knows: a folder of the shell, the executable, a language.
    };

    Kind kind;
    std::string place;               ///< Such as a variable's name or a registry value with its key and root. UTF-8.
    std::optional<std::string> held; ///< What was there, NULs of a text included; nothing when it was missing.
    bool decided = false;            ///< Whether what it held went into the answer.
    std::string problem{};           ///< Why what is there could not be used; empty when it was used or is missing.

    static constexpr const char* Unreadable = "cannot be read"; ///< The problem when it is not known what is there.
};

/// What an answer came from, in the order of asking.
using Trace = std::vector<Source>;

/// Where sources are noted. Null in applications, where nothing is described. Not guarded: a program that sets it asks
/// from one thread.
inline constinit Trace* trace = nullptr;

/// Made before a source is asked whose answer may not be used.
class Attempt final
{
public:
    /// What was asked since then did not decide, except the latest `kept`.
    void PassOver(std::size_t kept = 0) const
    {
        for (std::size_t i = m_first; trace && i + kept < trace->size(); ++i)
            (*trace)[i].decided = false;
    }

private:
    std::size_t m_first = trace ? trace->size() : 0;
};

/// The first answer that is not empty. Later sources are not asked; what was asked before did not decide.
template<class Sources, class Ask>
Utf8String FirstAnswer(const Sources& sources, const Ask& ask)
{
    for (const auto& source : sources)
    {
        const Attempt attempt;
        if (Utf8String answer = ask(source); !answer.empty())
            return answer;
        attempt.PassOver();
    }
    return {};
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
