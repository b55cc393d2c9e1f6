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
/// What is caught here is a lack of memory: programs are to work on without their log.
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
    Logger(Utf8String name, const Route& route) : m_name{std::move(name)}, m_route{&route} { SetLevel(route.level); }

    const Utf8String& GetName() const noexcept override { return m_name; }

    void Use(const Route& route) noexcept
    {
        m_route.store(&route, std::memory_order_release);
        SetLevel(route.level);
    }

private:
    void Write(LogLevel level, std::string_view text) noexcept override
    {
        const Record record{level, {m_name.data(), m_name.length()}, text, std::chrono::system_clock::now()};
        for (Sink* const sink : m_route.load(std::memory_order_acquire)->sinks)
            Quietly([&] { sink->Log(record); });
    }

    const Utf8String m_name;
    std::atomic<const Route*> m_route;
};

/// A configuration at work: its sinks, and the routes to them.
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

    void Close()
    {
        for (const auto& [key, sink] : m_sinks)
        {
            if (sink)
                sink->Close();
        }
    }

    const Route& RouteFor(const Variables& variables)
    {
        std::vector<Fault> faults;
        const LoggerPlan plan = PlanLogger(m_configuration, variables, faults);
        ReportOnce(faults);

        auto route = std::make_unique<Route>();
        LogLevel lowest = LogLevel::Off;
        for (const PlannedAppender& appender : plan.appenders)
        {
            Sink* const sink = SinkFor(appender);
            if (!sink)
                continue;
            route->sinks.push_back(sink);
            lowest = std::min(lowest, m_configuration.appenders[appender.position].threshold);
        }
        route->level = std::max(plan.level, lowest);
        return *m_routes.emplace_back(std::move(route));
    }

private:
    /// Loggers share it, unless the logger's name makes it another file.
    Sink* SinkFor(const PlannedAppender& planned)
    {
        std::pair key{planned.position, std::wstring{planned.file.GetName()}};
        const auto found = m_sinks.find(key);
        if (found != m_sinks.end())
            return found->second.get();
        const AppenderSettings& settings = m_configuration.appenders[planned.position];
        auto sink = MakeSink(settings, planned.file, FormatFault(m_configuration.file, {settings.line, ""}));
        return m_sinks.emplace(std::move(key), std::move(sink)).first->second.get();
    }

    const Configuration m_configuration;
    std::map<std::pair<std::size_t, std::wstring>, std::unique_ptr<Sink>> m_sinks;
    std::vector<std::unique_ptr<const Route>> m_routes;
    std::set<std::string> m_reported;
};

class Engine final
{
public:
    void SetOption(std::string name, const WString& value)
    {
        const std::scoped_lock lock{m_mutex};
        m_options[std::move(name)] = value;
    }

    void DefineVariable(std::string name, Utf8String (*value)())
    {
        const std::scoped_lock lock{m_mutex};
        m_variables[std::move(name)] = value;
    }

    void Activate()
    {
        const std::scoped_lock lock{m_mutex};
        m_mustRead = true;
        ReadConfigurationFile();
    }

    ILogger* GetLogger(const std::string& name)
    {
        const std::scoped_lock lock{m_mutex};
        if (m_mustRead) // there was not enough memory
            ReadConfigurationFile();
        if (m_configurations.empty())
            m_configurations.push_back(std::make_unique<ActiveConfiguration>(DefaultConfiguration()));
        if (const auto found = m_loggers.find(name); found != m_loggers.end())
            return found->second.get();
        auto logger = std::make_unique<Logger>(name, RouteFor(name, *m_configurations.back()));
        return m_loggers.emplace(name, std::move(logger)).first->second.get();
    }

private:
    /// Takes effect as a whole, or not at all when memory runs out.
    void ReadConfigurationFile()
    {
        QnFileName file;
        file.SetName(m_options["CONFIG_FILE"].c_str());
        std::vector<Fault> faults;
        auto read = ReadConfiguration(file, faults).value_or(DefaultConfiguration());
        read.file = file;
        auto configuration = std::make_unique<ActiveConfiguration>(std::move(read));
        configuration->ReportOnce(faults);
        std::vector<const Route*> routes;
        for (const auto& [name, logger] : m_loggers)
            routes.push_back(&RouteFor(name, *configuration));
        m_configurations.push_back(std::move(configuration));

        auto route = routes.begin();
        for (const auto& [name, logger] : m_loggers)
            logger->Use(**route++);
        m_mustRead = false;
        if (m_configurations.size() > 1)
            (*std::prev(m_configurations.end(), 2))->Close();
    }

    const Route& RouteFor(const std::string& logger, ActiveConfiguration& configuration) const
    {
        return configuration.RouteFor({.logger = logger, .process = ProcessNumber(), .named = m_variables});
    }

    std::mutex m_mutex;
    std::map<std::string, WString> m_options;
    std::map<std::string, Utf8String (*)(), std::less<>> m_variables;
    // The last one holds. Those before are kept, because another thread may be writing through them.
    std::vector<std::unique_ptr<ActiveConfiguration>> m_configurations;
    std::map<std::string, std::unique_ptr<Logger>> m_loggers;
    bool m_mustRead = false;
};

/// Never destroyed: destructors of static objects log as well.
Engine& TheEngine()
{
    static Engine& engine = *new Engine;
    return engine;
}

std::string ToUtf8(const WString& text)
{
    Utf8String utf8;
    QnStringUtilities::WCharToUtf8(utf8, text.c_str(), text.length());
    return utf8.ToStdString();
}
} // namespace

void LoggingConfig::SetOption(const WString& name, const WString& value) noexcept
{
    Quietly([&] { TheEngine().SetOption(ToUtf8(name), value); });
}

void LoggingConfig::SetOption(const Utf8String& name, const Utf8String& value) noexcept
{
    Quietly([&] { TheEngine().SetOption(name.ToStdString(), WString{value.c_str(), true}); });
}

void LoggingConfig::DefineVariable(const WString& name, Utf8String (*value)()) noexcept
{
    Quietly([&] { TheEngine().DefineVariable(ToUtf8(name), value); });
}

void LoggingConfig::DefineVariable(const Utf8String& name, Utf8String (*value)()) noexcept
{
    Quietly([&] { TheEngine().DefineVariable(name.ToStdString(), value); });
}

QuenlorStatus LoggingConfig::ActivateProvider(LoggingProviderType provider) noexcept
{
    if (provider != LoggingProviderType::ConfigurationFile)
        return QuenlorStatus::NotFound;
    Quietly([] { TheEngine().Activate(); });
    return QuenlorStatus::Success;
}

ILogger* LoggingManager::GetLogger(const WString& name) noexcept
{
    ILogger* logger = nullptr;
    Quietly([&] { logger = TheEngine().GetLogger(ToUtf8(name)); });
    return logger;
}

ILogger* LoggingManager::GetLogger(const Utf8String& name) noexcept
{
    ILogger* logger = nullptr;
    Quietly([&] { logger = TheEngine().GetLogger(name.ToStdString()); });
    return logger;
}
} // namespace Quenlor::NativeLogging
