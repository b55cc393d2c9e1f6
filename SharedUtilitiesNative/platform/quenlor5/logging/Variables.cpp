#include "logging/Variables.h"

#include <stdexcept>

#include "logging/System.h"

namespace Quenlor::NativeLogging
{
namespace
{
constexpr std::string_view EnvironmentPrefix = "env:";

std::string ValueOf(std::string_view name, const Variables& variables)
{
    if (name == "logger")
        return variables.logger;
    if (name == "pid")
        return variables.process;
    if (name.starts_with(EnvironmentPrefix))
    {
        const std::string variable{name.substr(EnvironmentPrefix.length())};
        if (auto value = EnvironmentVariable(variable); value && !value->empty())
            return *value;
        throw std::runtime_error("the environment variable \"" + variable + "\" is not set");
    }
    if (const auto found = variables.named.find(name); found != variables.named.end())
        return found->second().ToStdString();
    throw std::runtime_error("there is no variable \"${" + std::string{name} +
                             "}\"; an environment variable is written ${env:NAME}");
}
} // namespace

std::string Expand(std::string_view text, const Variables& variables)
{
    std::string expanded;
    for (;;)
    {
        const std::size_t start = text.find("${");
        expanded += text.substr(0, start);
        if (start == std::string_view::npos)
            return expanded;
        const std::size_t end = text.find('}', start);
        if (end == std::string_view::npos)
            throw std::runtime_error(R"("${" without "}")");
        expanded += ValueOf(text.substr(start + 2, end - start - 2), variables);
        text.remove_prefix(end + 1);
    }
}
} // namespace Quenlor::NativeLogging
