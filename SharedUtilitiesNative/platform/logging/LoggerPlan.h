#pragma once

#include <vector>

#include "Configuration.h"
#include "Variables.h"

namespace Quenlor::NativeLogging
{
/// An appender as one logger uses it.
struct PlannedAppender
{
    std::size_t position; ///< In Configuration::appenders.
    QnFileName file;      ///< Empty when it writes no file.
};

/// What a logger does under a configuration.
struct LoggerPlan
{
    LogLevel level = LogLevel::Off;
    std::vector<PlannedAppender> appenders; ///< Each once, also when it is reached in several ways.
};

/// Plans the logger that `variables` names. Appenders whose file name cannot be made are faults and left out.
LoggerPlan PlanLogger(const Configuration& configuration, const Variables& variables, std::vector<Fault>& faults);

/// The file that an appender writes for a logger: absolute, or else in the folder of the configuration file; empty for
/// an appender without a file.
/// @throws std::exception whose text is the fault
QnFileName FileOf(const AppenderSettings& appender, const QnFileName& configurationFile, const Variables& variables);
} // namespace Quenlor::NativeLogging
