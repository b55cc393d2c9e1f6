#include <Quenlor/NativeLogging.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <Quenlor/QnStringUtilities.h>

#include "logging/LoggerPlan.h"
#include "logging/Sinks.h"
#include "logging/System.h"

namespace Quenlor::NativeLogging
{
namespace
{
/// Programs work on without their log when memory runs out.
template<typename Work>
void Quietly(Work work) noexcept
{
    try
    {
        work();
    }
    catch (const std::exception&)
    {
    }
}

/// Where the records of a logger go.
struct Route
{
    LogLevel level = LogLevel::Off; ///< The lowest level that any of the sinks takes.
    std::vector<Sink*> sinks;
};

class Logger final : public ILogger
{
public:
    Logger(Utf8String name, Route route) : m_name{std::move(name)} { Use(std::move(route)); }

    const Utf8String& GetName() const noexcept override { return m_name; }

    void Use(Route route) noexcept ///< When it returns, nothing is written to the former sinks any more.
    {
        const std::scoped_lock lock{m_mutex};
        SetLevel(route.level);
        m_route = std::move(route);
    }

private:
    void Write(LogLevel level, std::string_view text) noexcept override
    {
        const Record record{level, m_name, text, std::chrono::system_clock::now()};
        const std::scoped_lock lock{m_mutex};
        for (Sink* const sink : m_route.sinks)
            Quietly([&] { sink->Log(record); });
    }

    const Utf8String m_name;
    std::mutex m_mutex;
    Route m_route;
};

/// A configuration at work, with the sinks that its loggers share.
class ActiveConfiguration final
{
public:
    explicit ActiveConfiguration(Configuration configuration) : m_configuration{std::move(configuration)} {}

    void ReportOnce(const std::vector<Fault>& faults)
    {
        for (const Fault& fault : faults)
        {
            std::string line = FormatFault(m_configuration.file, fault);
            if (m_reported.insert(line).second)
                Report(line);
        }
    }

    Route RouteFor(const std::string& logger, const VariableMap& variables)
    {
        std::vector<Fault> faults;
        const LoggerPlan plan =
            PlanLogger(m_configuration, {.logger = logger, .process = ProcessNumber(), .named = variables}, faults);
        ReportOnce(faults);
        Route route;
        for (const PlannedAppender& appender : plan.appenders)
        {
            if (Sink* const sink = SinkFor(appender))
            {
                route.sinks.push_back(sink);
                route.level = std::min(route.level, m_configuration.appenders[appender.position].threshold);
            }
        }
        route.level = std::max(plan.level, route.level);
        return route;
    }

private:
    /// Loggers share it, unless the logger's name makes it another file.
    Sink* SinkFor(const PlannedAppender& planned)
    {
        std::pair key{planned.position, std::wstring{planned.file.GetName()}};
        if (const auto found = m_sinks.find(key); found != m_sinks.end())
            return found->second.get();
        const AppenderSettings& settings = m_configuration.appenders[planned.position];
        auto sink = MakeSink(settings, planned.file, FormatFault(m_configuration.file, {settings.line, ""}));
        return m_sinks.emplace(std::move(key), std::move(sink)).first->second.get();
    }

    const Configuration m_configuration;
    std::map<std::pair<std::size_t, std::wstring>, std::unique_ptr<Sink>> m_sinks;
    std::set<std::string> m_reported;
};

struct Engine
{
    /// Takes effect as a whole, or not at all when memory runs out.
    void ReadConfigurationFile()
    {
        mustRead = true;
        std::vector<Fault> faults;
        auto read = ReadConfiguration(file, faults).value_or(DefaultConfiguration());
        read.file = file;
        auto configuration = std::make_unique<ActiveConfiguration>(std::move(read));
        configuration->ReportOnce(faults);
        std::vector<Route> routes;
        for (const auto& [name, logger] : loggers)
            routes.push_back(configuration->RouteFor(name, variables));

        auto route = routes.begin();
        for (const auto& [name, logger] : loggers)
            logger->Use(std::move(*route++));
        active = std::move(configuration); // closes the former log files
        mustRead = false;
    }

    ILogger* LoggerOf(const std::string& name)
    {
        if (mustRead) // there was not enough memory
            ReadConfigurationFile();
        if (const auto found = loggers.find(name); found != loggers.end())
            return found->second.get();
        auto logger = std::make_unique<Logger>(name, active->RouteFor(name, variables));
        return loggers.emplace(name, std::move(logger)).first->second.get();
    }

    std::mutex mutex;
    QnFileName file;
    VariableMap variables;
    std::unique_ptr<ActiveConfiguration> active = std::make_unique<ActiveConfiguration>(DefaultConfiguration());
    std::map<std::string, std::unique_ptr<Logger>> loggers;
    bool mustRead = false;
};

/// Never destroyed: destructors of static objects log too.
Engine& TheEngine()
{
    static Engine& engine = *new Engine;
    return engine;
}

template<typename Work>
void WithEngine(Work work) noexcept
{
    Quietly(
        [&]
        {
        Engine& engine = TheEngine();
        const std::scoped_lock lock{engine.mutex};
        work(engine);
    });
}

Utf8String ToUtf8(const WString& text)
{
    Utf8String utf8;
    QnStringUtilities::WCharToUtf8(utf8, text.c_str());
    return utf8;
}
} // namespace

void LoggingConfig::SetOption(const WString& name, const WString& value) noexcept
{
    if (name == L"CONFIG_FILE")
        WithEngine([&](Engine& engine) { engine.file = QnFileName{value}; });
}

void LoggingConfig::SetOption(const Utf8String& name, const Utf8String& value) noexcept
{
    Quietly([&] { SetOption(WString{name.c_str(), true}, WString{value.c_str(), true}); });
}

void LoggingConfig::DefineVariable(const Utf8String& name, Utf8String (*value)()) noexcept
{
    WithEngine([&](Engine& engine) { engine.variables[name.ToStdString()] = value; });
}

QuenlorStatus LoggingConfig::ActivateProvider(LoggingProviderType provider) noexcept
{
    if (provider != LoggingProviderType::ConfigurationFile)
        return QuenlorStatus::NotFound;
    WithEngine([](Engine& engine) { engine.ReadConfigurationFile(); });
    return QuenlorStatus::Success;
}

ILogger* LoggingManager::GetLogger(const WString& name) noexcept
{
    ILogger* logger = nullptr;
    Quietly([&] { logger = GetLogger(ToUtf8(name)); });
    return logger;
}

ILogger* LoggingManager::GetLogger(const Utf8String& name) noexcept
{
    ILogger* logger = nullptr;
    WithEngine([&](Engine& engine) { logger = engine.LoggerOf(name.ToStdString()); });
    return logger;
}
} // namespace Quenlor::NativeLogging
