#include "Operations.h"

#include <sstream>

#include "common/StoredText.h"

namespace FraxoReg
{
namespace
{
/// The name of a switch, which may start with either sign of Windows or with two hyphens; empty for anything else.
std::string NameOfSwitch(std::string_view argument)
{
    for (const std::string_view sign : {"/", "--", "-"})
    {
        if (argument.starts_with(sign))
            return Tools::Lower(argument.substr(sign.size()));
    }
    return {};
}

struct Definitions
{
    std::vector<std::string> operands;
    std::map<std::string, bool> switches; // whether each takes text

    explicit Definitions(std::string_view help)
    {
        std::istringstream lines{std::string{help}};
        for (std::string line; std::getline(lines, line);)
        {
            if (!line.starts_with("  ") || line[2] == ' ')
                continue;
            const std::size_t end = line.find(' ', 2);
            const std::string name = line.substr(2, end - 2);
            if (const std::string switchName = NameOfSwitch(name); !switchName.empty())
                switches[switchName] = line[end + 1] != ' ';
            else
                operands.push_back(name);
        }
    }
};
} // namespace

bool EqualIgnoringCase(std::string_view left, std::string_view right)
{
    return Tools::Lower(left) == Tools::Lower(right);
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
        const std::string name = NameOfSwitch(argument);
        const auto known = definitions.switches.find(name);
        if (IsHelpSwitch(argument))
        {
            m_wantsHelp = true;
            return;
        }
        if (known != definitions.switches.end())
        {
            if (Has(argument))
                throw InvalidSyntax("'" + argument + "' is given more than once.");
            if (known->second && i + 1 == arguments.size())
                throw InvalidSyntax("Value expected for '" + argument + "'.");
            m_switches[name] = known->second ? arguments[++i] : std::string{};
        }
        else if (name == "reg:32" || name == "reg:64")
            continue; // as on Windows, but there is one view of the registry
        else if (m_operands.size() == definitions.operands.size())
            throw InvalidSyntax("'" + argument + "' is not expected here.");
        else
            m_operands.push_back(argument);
    }
    if (m_operands.size() < definitions.operands.size())
        throw InvalidSyntax(definitions.operands[m_operands.size()] + " is missing.");
}

bool Arguments::Has(std::string_view name) const
{
    return m_switches.contains(NameOfSwitch(name));
}

std::optional<std::string> Arguments::Text(std::string_view name) const
{
    return Has(name) ? std::optional{m_switches.at(NameOfSwitch(name))} : std::nullopt;
}

void Arguments::RefuseTogether(std::initializer_list<const char*> names) const
{
    std::string first;
    for (const char* const name : names)
    {
        if (Has(name) && !first.empty())
            throw InvalidSyntax("'" + first + "' and '" + name + "' exclude each other.");
        if (Has(name))
            first = name;
    }
}
} // namespace FraxoReg
