#include "Arguments.h"

#include <algorithm>
#include <iterator>

#include "Failure.h"

namespace FraxoReg
{
namespace
{
constexpr std::string_view Signs[] = {"/", "--", "-"};

constexpr char Lower(char character) noexcept
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

const Switch* FindSwitch(std::span<const Switch> switches, std::string_view argument) noexcept
{
    const auto* const sign =
        std::find_if(std::begin(Signs), std::end(Signs),
                     [argument](std::string_view candidate) { return argument.starts_with(candidate); });
    if (sign == std::end(Signs))
        return nullptr;
    argument.remove_prefix(sign->size());
    const auto found =
        std::find_if(switches.begin(), switches.end(),
                     [argument](const Switch& candidate) { return EqualIgnoringCase(candidate.name, argument); });
    return found == switches.end() ? nullptr : &*found;
}

std::string Shown(std::string_view name)
{
    return "'/" + std::string{name} + "'";
}
} // namespace

bool EqualIgnoringCase(std::string_view left, std::string_view right) noexcept
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return Lower(a) == Lower(b); });
}

bool IsHelpSwitch(std::string_view argument) noexcept
{
    return argument == "/?" || argument == "-?" || argument == "--help";
}

Arguments::Arguments(std::span<const std::string> arguments, std::size_t operandCount, std::span<const Switch> switches)
{
    for (std::size_t i = 0; i < arguments.size(); ++i)
    {
        const std::string& argument = arguments[i];
        if (IsHelpSwitch(argument))
        {
            m_wantsHelp = true;
            return;
        }
        const Switch* const known = FindSwitch(switches, argument);
        if (!known)
        {
            if (m_operands.size() == operandCount)
                throw InvalidSyntax("'" + argument + "' is not expected here.");
            m_operands.push_back(argument);
            continue;
        }
        if (Has(known->name))
            throw InvalidSyntax(Shown(known->name) + " option is not allowed more than '1' time(s).");
        std::optional<std::string>& text = m_switches[known->name];
        const bool isFollowed = i + 1 < arguments.size();
        if (known->takes == Takes::Text && !isFollowed)
            throw InvalidSyntax("Value expected for " + Shown(known->name) + ".");
        if (known->takes == Takes::Text ||
            (known->takes == Takes::OptionalText && isFollowed && !FindSwitch(switches, arguments[i + 1])))
            text = arguments[++i];
    }
    if (m_operands.size() != operandCount)
        throw InvalidSyntax();
    RefuseTogether({"reg:32", "reg:64"});
}

std::optional<std::string> Arguments::Text(std::string_view name) const
{
    const auto found = m_switches.find(name);
    return found == m_switches.end() ? std::nullopt : found->second;
}

void Arguments::RefuseTogether(std::initializer_list<std::string_view> names) const
{
    if (std::count_if(names.begin(), names.end(), [this](std::string_view name) { return Has(name); }) > 1)
        throw InvalidSyntax();
}
} // namespace FraxoReg
