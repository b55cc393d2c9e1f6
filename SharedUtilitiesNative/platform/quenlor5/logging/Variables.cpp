#include "logging/Variables.h"

#include <algorithm>
#include <stdexcept>

#include "logging/System.h"

namespace Quenlor::NativeLogging
{
namespace
{
constexpr std::string_view EnvironmentPrefix = "env:";

constexpr std::size_t LongestPath = 32767; // no system takes a longer one

/// A logger's name as part of one file name: what would lead to another folder or stream becomes `_`.
std::string AsFileName(std::string name)
{
    if (name.find_first_not_of('.') == std::string::npos) // a folder, or nothing before the rest of the path
        return name.empty() ? "root" : std::string(name.length(), '_');
    std::ranges::replace_if(
        name,
        [](char c) { return (c >= '\0' && c < ' ') || std::string_view{"/\\:"}.find(c) != std::string_view::npos; },
        '_');
    return name;
}

std::string ValueOf(std::string_view name, const Variables& variables)
{
    if (name == "logger")
        return AsFileName(variables.logger);
    if (name == "pid")
        return variables.process;
    if (name.starts_with(EnvironmentPrefix))
    {
        const std::string variable{name.substr(EnvironmentPrefix.length())};
        if (auto value = EnvironmentVariable(variable); value && !value->empty())
            return *value;
        throw std::runtime_error("environment variable \"" + variable + "\" is not set");
    }
    if (const auto found = variables.named.find(name); found != variables.named.end())
        return found->second().ToStdString();
    throw std::runtime_error("unknown variable \"${" + std::string{name} +
                             "}\"; environment variables are written ${env:NAME}");
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
        if (expanded.length() > LongestPath)
            throw std::runtime_error("the path is too long");
    }
}
} // namespace Quenlor::NativeLogging
