#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace FraxoReg
{
/// Ends a verb: the message follows `ERROR: `, and the exit status is 1.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Wrong use of a verb: where help is found stands below the message, and below that the hint, if there is one.
class WrongUse final : public Failure
{
public:
    explicit WrongUse(const std::string& message, std::string hint = {}) : Failure{message}, m_hint{std::move(hint)} {}
    const std::string& Hint() const noexcept { return m_hint; }

private:
    std::string m_hint;
};

inline Failure NotFound()
{
    return Failure{"The system was unable to find the specified registry key or value."};
}

/// Most wrong use.
inline WrongUse InvalidSyntax(const std::string& detail = {})
{
    return WrongUse{detail.empty() ? "Invalid syntax." : "Invalid syntax. " + detail};
}
} // namespace FraxoReg
