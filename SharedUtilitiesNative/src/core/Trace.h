#pragma once

#include <optional>
#include <string>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// One question that the library asked the machine on the way to an answer.
struct Inquiry
{
    enum class Source
    {
        Environment,
        RegistryValue,
        RegistryKey, ///< Whether it is there.
        Path,        ///< Whether something is there.
        System,      ///< What the operating system knows: a folder of the shell, the executable, a language.
    };

    Source source;
    std::string place;               ///< Such as a variable's name or a registry value with its key and root. UTF-8.
    std::optional<std::string> held; ///< What was there, NULs of a text included; nothing when it was missing.
};

/// What an inquiry held that only asked whether something is there.
inline std::optional<std::string> Presence(bool exists)
{
    return exists ? std::optional{std::string{}} : std::nullopt;
}

/// Told of every inquiry, in order, while it is set. Null, as in every application: then nothing is described.
/// Not guarded: a program that sets it asks from one thread.
using Tracer = void (*)(Inquiry inquiry);
inline constinit Tracer tracer = nullptr;

/// @param describe makes the Inquiry; not called while nobody listens
template<class Describe>
void Trace(const Describe& describe)
{
    if (tracer)
        tracer(describe());
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
