#include "logging/LoggerPlan.h"

#include <algorithm>
#include <exception>
#include <new>
#include <set>
#include <stdexcept>

namespace Quenlor::NativeLogging
{
namespace
{
/// The settings that hold for a logger: its own, if it has any, then those of its ancestors up to the root.
std::vector<const LoggerSettings*> Lineage(const Configuration& configuration, std::string_view name)
{
    std::vector<const LoggerSettings*> lineage;
    for (std::string key = LoggerKey(name);; key.resize(key.rfind('.') == key.npos ? 0 : key.rfind('.')))
    {
        if (const auto found = configuration.loggers.find(key); found != configuration.loggers.end())
            lineage.push_back(&found->second);
        if (key.empty())
            return lineage;
    }
}

/// @throws std::exception whose text is the fault
QnFileName MakeFileName(const std::string& path, const QnFileName& configurationFile, const Variables& variables)
{
    QnFileName file;
    file.SetNameUtf8(Expand(path, variables).c_str());
    if (!file.IsAbsolutePath())
    {
        const QnFileName relative = file;
        file.SetName(QnFileName::GetDirectoryName(configurationFile.GetName()).c_str());
        file.AppendToPath(relative.GetName());
    }
    WString fixed;
    QnFileName::FixPathName(fixed, file.GetName());
    file.SetName(fixed.c_str());
    if (file.ToNativePath().empty())
        throw std::runtime_error("\"" + path + "\" cannot be the name of a file");
    return file;
}
} // namespace

LoggerPlan PlanLogger(const Configuration& configuration, const Variables& variables, std::vector<Fault>& faults)
{
    const std::vector<const LoggerSettings*> lineage = Lineage(configuration, variables.logger);
    LoggerPlan plan;
    const auto decides = [](const LoggerSettings* settings) { return settings->level.has_value(); };
    if (const auto found = std::ranges::find_if(lineage, decides); found != lineage.end())
        plan.level = *(*found)->level;

    std::set<std::size_t> positions;
    for (const LoggerSettings* const settings : lineage)
    {
        positions.insert(settings->appenders.begin(), settings->appenders.end());
        if (!settings->isAdditive)
            break;
    }
    for (const std::size_t position : positions)
    {
        if (auto file = FileOf(configuration.appenders[position], configuration, variables, faults))
            plan.appenders.push_back({position, *std::move(file)});
    }
    if (plan.appenders.empty() && plan.level != LogLevel::Off)
        faults.push_back({lineage.front()->line, "no appender is left: even critical records go nowhere"});
    return plan;
}

std::optional<QnFileName> FileOf(const AppenderSettings& appender, const Configuration& configuration,
                                 const Variables& variables, std::vector<Fault>& faults)
{
    if (appender.path.empty())
        return QnFileName{};
    try
    {
        return MakeFileName(appender.path, configuration.file, variables);
    }
    catch (const std::bad_alloc&) // the next attempt may find more memory
    {
        throw;
    }
    catch (const std::exception& fault) // what a variable's function throws is its own
    {
        faults.push_back({appender.line, "<appender>: \"" + appender.name + "\" is ignored: " + fault.what()});
        return std::nullopt;
    }
}
} // namespace Quenlor::NativeLogging
