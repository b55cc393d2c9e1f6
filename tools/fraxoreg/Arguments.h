#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace FraxoReg
{
bool EqualIgnoringCase(std::string_view left, std::string_view right) noexcept; ///< Of ASCII letters only.
bool IsHelpSwitch(std::string_view argument) noexcept;

/// The arguments of an operation, as its help defines them.
///
/// A line of the help that starts with two blanks defines an operand (`  KeyName  text`) or a switch, which takes what
/// follows it if a placeholder comes after one more blank (`  /v ValueName  text`).
class Arguments final
{
public:
    /// A switch that takes text takes whatever follows: data and files may well start with a slash.
    /// @throws WrongUse
    Arguments(std::string_view help, std::span<const std::string> arguments);

    bool WantsHelp() const noexcept { return m_wantsHelp; } ///< The rest is not checked then.
    const std::string& Operand(std::size_t index) const { return m_operands.at(index); }
    bool Has(std::string_view name) const { return m_switches.contains(name); } ///< `name` starts with its sign.
    std::optional<std::string> Text(std::string_view name) const;               ///< What was given with the switch.

    void RefuseTogether(std::initializer_list<std::string_view> names) const; ///< @throws WrongUse

private:
    std::vector<std::string> m_operands;
    std::map<std::string_view, std::string> m_switches;
    bool m_wantsHelp = false;
};
} // namespace FraxoReg
