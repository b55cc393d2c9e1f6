#include "logging/LoggerPlan.h"

#include <algorithm>
#include <exception>
#include <new>
#include <set>
#include <stdexcept>

#include "logging/System.h"

namespace Quenlor::NativeLogging
{
namespace
{
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
    constexpr std::string_view environment = "env:";
    if (name == "logger")
        return AsFileName(variables.logger);
    if (name == "pid")
        return variables.process;
    if (name.starts_with(environment))
    {
        const std::string variable{name.substr(environment.length())};
        std::string value = EnvironmentVariable(variable);
        return !value.empty() ? value
                              : throw std::runtime_error("environment variable \"" + variable + "\" is not set");
    }
    if (const auto found = variables.named.find(name); found != variables.named.end())
        return found->second().ToStdString();
    throw std::runtime_error("unknown variable \"${" + std::string{name} +
                             "}\"; environment variables are written ${env:NAME}");
}

/// `text` with every `${...}` replaced; `${env:NAME}` is an environment variable.
/// @throws std::exception with the fault as its text: a variable that has no value, or a `${` without its `}`; and
///         what the function of a named variable throws
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
} // namespace

LoggerPlan PlanLogger(const Configuration& configuration, const Variables& variables, std::vector<Fault>& faults)
{
    std::optional<LogLevel> level;
    std::optional<std::size_t> line;
    std::set<std::size_t> positions;
    bool isAdditive = true;
    for (std::wstring key = LoggerKey(variables.logger);; key.resize(key.rfind(L'.') == key.npos ? 0 : key.rfind(L'.')))
    {
        if (const auto found = configuration.loggers.find(key); found != configuration.loggers.end())
        {
            const LoggerSettings& settings = found->second;
            level = level ? level : settings.level;
            line = line.value_or(settings.line);
            if (isAdditive)
                positions.insert(settings.appenders.begin(), settings.appenders.end());
            isAdditive = isAdditive && settings.isAdditive;
        }
        if (key.empty())
            break;
    }

    LoggerPlan plan{.level = level.value_or(LogLevel::Off), .appenders = {}};
    for (const std::size_t position : positions)
    {
        if (auto file = FileOf(configuration.appenders[position], configuration, variables, faults))
            plan.appenders.push_back({position, *std::move(file)});
    }
    if (plan.appenders.empty() && plan.level != LogLevel::Off)
        faults.push_back({line.value_or(0), "no appender is left: even critical records are lost"});
    return plan;
}

std::optional<QnFileName> FileOf(const AppenderSettings& appender, const Configuration& configuration,
                                 const Variables& variables, std::vector<Fault>& faults)
{
    if (appender.path.empty())
        return QnFileName{};
    try
    {
        QnFileName file{Utf8String{Expand(appender.path, variables)}};
        if (!file.IsAbsolutePath())
            file = QnFileName{QnFileName::GetDirectoryName(configuration.file.GetName())}.AppendToPath(file.GetName());
        WString fixed;
        QnFileName::FixPathName(fixed, file.GetName());
        file = QnFileName{fixed};
        if (file.ToNativePath().empty())
            throw std::runtime_error("\"" + appender.path + "\" cannot be the name of a file");
        return file;
    }
    catch (const std::bad_alloc&) // the next attempt may find more memory
    {
        throw;
    }
    catch (const std::exception& fault) // a variable's function may throw an exception of its own
    {
        faults.push_back({appender.line, "<appender>: \"" + appender.name + "\" is ignored: " + fault.what()});
        return std::nullopt;
    }
}
} // namespace Quenlor::NativeLogging
