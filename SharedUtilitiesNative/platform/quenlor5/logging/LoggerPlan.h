#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "logging/Configuration.h"

namespace Quenlor::NativeLogging
{
using VariableMap = std::map<std::string, Utf8String (*)(), std::less<>>;

/// What `${...}` can be replaced by in a file name, besides the environment variables.
struct Variables
{
    std::string logger;  ///< ${logger}, as far as a file name can hold it
    std::string process; ///< ${pid}
    VariableMap named;
};

/// An appender as one logger uses it.
struct PlannedAppender
{
    std::size_t position = 0; ///< In Configuration::appenders.
    /// Empty when it writes no file. Holds the values of environment variables, which may be private: what others get
    /// to see is AppenderSettings::path, the text of the configuration.
    QnFileName file;
};

/// What a logger does under a configuration.
struct LoggerPlan
{
    LogLevel level = LogLevel::Off;
    std::vector<PlannedAppender> appenders; ///< Each once, even when it is reached in several ways.
};

/// Plans the logger that `variables` names. Appenders whose file name cannot be made are left out.
LoggerPlan PlanLogger(const Configuration& configuration, const Variables& variables, std::vector<Fault>& faults);

/// The file that an appender writes for a logger: absolute, or else in the folder of the configuration file. An empty
/// name for an appender without a file.
/// @return none when the name cannot be made, which is a fault
std::optional<QnFileName> FileOf(const AppenderSettings& appender, const Configuration& configuration,
                                 const Variables& variables, std::vector<Fault>& faults);
} // namespace Quenlor::NativeLogging
