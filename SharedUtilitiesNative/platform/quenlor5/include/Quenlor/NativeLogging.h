#pragma once

#include <atomic>
#include <string>
#include <string_view>

#include <Quenlor/QuenlorExport.h>
#include <Quenlor/QuenlorStatus.h>
#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>

/// The logging engine of the family: loggers with dotted names, configured by an XML file (docs/logging.md).
///
/// Nothing here throws, and every operation may be called from any thread, even while the process starts or ends. What
/// is wrong with a configuration or a log file is reported once, in one line on standard error and in the debugger.
namespace Quenlor::NativeLogging
{
/// How serious a record is. A logger or appender that is set to a level takes that level and all after it.
enum class LogLevel : int
{
    Trace,
    Debug,
    Info,
    Warning,
    Error,
    Critical,
    Off, ///< Takes nothing; no record has this level.
};

/// The text of a record, in UTF-8. Refers to the text it is made from, without copying it.
class LogText final
{
public:
    /// @{

    /// Refers to that text; a null pointer gives the empty one.
    // Implicit on purpose: everything that holds text can be logged.
    LogText(const char* text) noexcept : m_text{text ? text : ""} {}
    LogText(std::string_view text) noexcept : m_text{text} {}
    LogText(const std::string& text) noexcept : m_text{text} {}
    LogText(const Utf8String& text) noexcept : m_text{text.data(), text.length()} {}
    /// @}

    std::string_view View() const noexcept { return m_text; } ///< The text itself, NULs included.

private:
    std::string_view m_text;
};

/// What a program writes its records to. The engine owns it; it lives until the process ends, so the destructors of
/// static objects can use it too.
///
///     ILogger& log = *LoggingManager::GetLogger(L"Editor.Analysis");
///     log.Warning("The section database is older than this program");
///     if (log.IsEnabled(LogLevel::Debug))
///         log.Debug(DescribeEverything());
///
/// A record has been handed to the operating system when the call returns: a crash of the process does not lose it.
class QUENLOR_EXPORT ILogger
{
public:
    ILogger(const ILogger&) = delete;
    ILogger& operator=(const ILogger&) = delete;

    virtual const Utf8String& GetName() const noexcept = 0; ///< As it was given to LoggingManager::GetLogger.

    /// Whether any appender takes records of this level; costs one load and a comparison. Ask before composing a
    /// message that takes work.
    bool IsEnabled(LogLevel level) const noexcept
    {
        return level >= m_level.load(std::memory_order_relaxed) && level < LogLevel::Off;
    }

    /// @{

    /// Writes a record if any appender takes records of its level.
    void Log(LogLevel level, LogText text) noexcept
    {
        if (IsEnabled(level))
            Write(level, text.View());
    }

    void Trace(LogText text) noexcept { Log(LogLevel::Trace, text); }
    void Debug(LogText text) noexcept { Log(LogLevel::Debug, text); }
    void Info(LogText text) noexcept { Log(LogLevel::Info, text); }
    void Warning(LogText text) noexcept { Log(LogLevel::Warning, text); }
    void Error(LogText text) noexcept { Log(LogLevel::Error, text); }
    void Critical(LogText text) noexcept { Log(LogLevel::Critical, text); }
    /// @}

protected:
    ILogger() = default;
    ~ILogger() = default;
    /// For the engine: the lowest level that any appender takes.
    void SetLevel(LogLevel level) noexcept { m_level.store(level, std::memory_order_relaxed); }

private:
    virtual void Write(LogLevel level, std::string_view text) noexcept = 0;

    std::atomic<LogLevel> m_level{LogLevel::Off};
};

/// Where the engine gets its configuration from. Other products of the family have further providers.
enum class LoggingProviderType : int
{
    ConfigurationFile = 3, ///< The XML file that the option CONFIG_FILE names.
};

/// How the engine is started; Logger::Initialize does it for the programs of the family.
class QUENLOR_EXPORT LoggingConfig final
{
public:
    LoggingConfig() = delete;

    /// Sets an option for the provider that is activated next. There is one: "CONFIG_FILE", the full path of the
    /// configuration file. Other options are ignored.
    static void SetOption(const WString& name, const WString& value) noexcept;
    static void SetOption(const Utf8String& name, const Utf8String& value) noexcept; ///< The same in UTF-8.

    /// Replaces `${name}` by what `value` returns, in the file names of the configuration that is activated next.
    /// It is called only for a file name with that variable. When it throws, that is reported as a fault of the
    /// configuration, and the appender with that file name writes nothing.
    static void DefineVariable(const Utf8String& name, Utf8String (*value)()) noexcept;

    /// Starts the engine, or restarts it: loggers that were handed out before follow the new configuration.
    /// Until then, and when the configuration file is missing or not XML, warnings and worse go to standard error and
    /// to the debugger.
    /// @return NotFound for a provider that this library does not have, which changes nothing
    static QuenlorStatus ActivateProvider(LoggingProviderType provider) noexcept;
};

/// Hands out the loggers.
class QUENLOR_EXPORT LoggingManager final
{
public:
    LoggingManager() = delete;

    /// The one logger of that name, made when it is first asked for. Dots separate the names of its ancestors, from
    /// which it inherits level and appenders; the empty name is that of the root.
    /// @return null only when memory runs out; the next call tries again
    static ILogger* GetLogger(const WString& name) noexcept;
    static ILogger* GetLogger(const Utf8String& name) noexcept; ///< The name in UTF-8.
};
} // namespace Quenlor::NativeLogging
