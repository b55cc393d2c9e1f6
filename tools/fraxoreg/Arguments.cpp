#include "Arguments.h"

#include <algorithm>

#include "Operations.h"

namespace FraxoReg
{
namespace
{
constexpr char Lower(char character) noexcept
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// A switch may start with either sign of Windows, or with two hyphens.
std::string_view WithoutSign(std::string_view name) noexcept
{
    for (const std::string_view sign : {"/", "--", "-"})
    {
        if (name.starts_with(sign))
            return name.substr(sign.size());
    }
    return {};
}

struct Definition
{
    std::string_view name;
    bool takesText;
};

struct Definitions
{
    std::vector<std::string_view> operands;
    std::vector<Definition> switches;

    explicit Definitions(std::string_view help)
    {
        for (; !help.empty(); help.remove_prefix(std::min(help.find('\n'), help.size() - 1) + 1))
        {
            if (!help.starts_with("  ") || help[2] == ' ')
                continue;
            const std::size_t end = help.find(' ', 2);
            const std::string_view name = help.substr(2, end - 2);
            if (WithoutSign(name).empty())
                operands.push_back(name);
            else
                switches.push_back({name, help[end + 1] != ' '});
        }
    }

    const Definition* FindSwitch(std::string_view argument) const noexcept
    {
        const auto found = std::find_if(switches.begin(), switches.end(),
                                        [name = WithoutSign(argument)](const Definition& candidate)
                                        { return EqualIgnoringCase(WithoutSign(candidate.name), name); });
        return found == switches.end() ? nullptr : &*found;
    }
};

std::string Quoted(std::string_view name)
{
    return "'" + std::string{name} + "'";
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

Arguments::Arguments(std::string_view help, std::span<const std::string> arguments)
{
    const Definitions definitions{help};
    for (std::size_t i = 0; i < arguments.size(); ++i)
    {
        const std::string& argument = arguments[i];
        if (IsHelpSwitch(argument))
        {
            m_wantsHelp = true;
            return;
        }
        if (const Definition* const known = definitions.FindSwitch(argument))
        {
            if (Has(known->name))
                throw InvalidSyntax(Quoted(known->name) + " is given more than once.");
            if (known->takesText && i + 1 == arguments.size())
                throw InvalidSyntax("Value expected for " + Quoted(known->name) + ".");
            m_switches[known->name] = known->takesText ? arguments[++i] : std::string{};
        }
        else if (const std::string_view name = WithoutSign(argument);
                 EqualIgnoringCase(name, "reg:32") || EqualIgnoringCase(name, "reg:64"))
            continue; // as on Windows, but there is one view of the registry
        else if (m_operands.size() == definitions.operands.size())
            throw InvalidSyntax(Quoted(argument) + " is not expected here.");
        else
            m_operands.push_back(argument);
    }
    if (m_operands.size() < definitions.operands.size())
        throw InvalidSyntax(std::string{definitions.operands[m_operands.size()]} + " is missing.");
}

std::optional<std::string> Arguments::Text(std::string_view name) const
{
    const auto found = m_switches.find(name);
    return found == m_switches.end() ? std::nullopt : std::optional{found->second};
}

void Arguments::RefuseTogether(std::initializer_list<std::string_view> names) const
{
    std::string_view first;
    for (const std::string_view name : names)
    {
        if (Has(name) && !first.empty())
            throw InvalidSyntax(Quoted(first) + " and " + Quoted(name) + " exclude each other.");
        if (Has(name))
            first = name;
    }
}
} // namespace FraxoReg
