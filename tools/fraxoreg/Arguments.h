#pragma once

#include <cstddef>
#include <initializer_list>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace FraxoReg
{
enum class Takes
{
    Nothing,
    Text,
    OptionalText ///< None when a switch or nothing follows.
};

/// What may follow a verb. The name is without the sign before it: `/` or `-`, as Windows takes both, or `--`.
struct Switch
{
    std::string_view name;
    Takes takes = Takes::Nothing;
};

bool EqualIgnoringCase(std::string_view left, std::string_view right) noexcept; ///< ASCII letters alone.
bool IsHelpSwitch(std::string_view argument) noexcept;

/// The arguments of a verb, sorted into operands and switches. What is wrong with them is thrown as WrongUse.
class Arguments final
{
public:
    /// A switch that takes text takes whatever follows: data and files may well start with a slash.
    Arguments(std::span<const std::string> arguments, std::size_t operandCount, std::span<const Switch> switches);

    bool WantsHelp() const noexcept { return m_wantsHelp; } ///< The rest is not checked then.
    const std::string& Operand(std::size_t index) const { return m_operands.at(index); }
    bool Has(std::string_view name) const { return m_switches.contains(name); }
    /// What was given with the switch; none when it was absent or had none.
    std::optional<std::string> Text(std::string_view name) const;

    void RefuseTogether(std::initializer_list<std::string_view> names) const;

private:
    std::vector<std::string> m_operands;
    std::map<std::string_view, std::optional<std::string>> m_switches;
    bool m_wantsHelp = false;
};
} // namespace FraxoReg
