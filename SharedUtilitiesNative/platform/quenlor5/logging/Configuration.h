#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Quenlor/NativeLogging.h>
#include <Quenlor/QnFileName.h>

namespace Quenlor::NativeLogging
{
enum class AppenderType
{
    Console,
    File,
    RollingFile,
    Debugger,
    Null,
};

/// One `<appender>`.
struct AppenderSettings
{
    std::string name;
    std::size_t line = 0;
    AppenderType type = AppenderType::Console;
    std::string pattern = "%Y-%m-%d %H:%M:%S.%e [%P:%t] %l %n: %v";
    LogLevel threshold = LogLevel::Trace;
    bool toStandardOutput = false;      ///< A console: else to standard error.
    std::string path{};                 ///< A file: with its variables.
    std::uintmax_t maxSize = 10U << 20; ///< A rolling file: in bytes.
    std::uintmax_t count = 3;           ///< A rolling file: how many full files are kept.
};

/// One `<logger>`, or the root.
struct LoggerSettings
{
    std::size_t line = 0;
    std::optional<LogLevel> level{}; ///< None: that of the parent.
    bool isAdditive = true;
    std::vector<std::size_t> appenders{}; ///< Positions in Configuration::appenders.
};

/// What a configuration file says, apart from its faults.
struct Configuration
{
    QnFileName file;
    std::vector<AppenderSettings> appenders;
    std::map<std::wstring, LoggerSettings> loggers; ///< By LoggerKey; the root is always there, with a level.
};

/// Something wrong with a configuration.
struct Fault
{
    std::size_t line; ///< 0 when it is about the file as a whole.
    std::string text;
};

/// Loggers are found in any letter case of their names: on Windows a program's name has the case its caller typed.
std::wstring LoggerKey(std::string_view name);

/// The name of a level, as configurations and records spell it.
std::string_view NameOf(LogLevel level);

/// The configuration without a file: warnings and worse go to standard error and to the debugger.
Configuration DefaultConfiguration();

/// Reads a configuration file, and reports what is wrong with it. What is wrong is ignored. Opens no log file.
/// @return none when the file is missing, which is not a fault, or when nothing can be read from it
std::optional<Configuration> ReadConfiguration(const QnFileName& file, std::vector<Fault>& faults);

/// The name of a file as other programs of this system take it, in UTF-8.
std::string NativeName(const QnFileName& file);

/// One line that names file, line and fault; without a line break.
std::string FormatFault(const QnFileName& file, const Fault& fault);
} // namespace Quenlor::NativeLogging
