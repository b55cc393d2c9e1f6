#pragma once

#include <string>
#include <vector>

#include "logging/LogConfigurationChoice.h"

namespace FraxoInfo
{
/// How the log of a program is set up on this machine.
struct LogSetup
{
    Quenlor::Fraxo::SharedUtilities::Native::LogConfigurationChoice choice;
    bool exists = false;            ///< Whether the chosen configuration file does.
    std::vector<std::string> lines; ///< The level, and each appender with where it writes.
    std::vector<std::string> faults;
};

/// The executable of this process.
Quenlor::QnFileName ThisProgram();

/// Looks at the configuration as the program would, and validates all of it. No log file is opened.
/// @param executable the full path of the program's executable
LogSetup ExamineLog(const Quenlor::QnFileName& executable);

std::string FormatLogSetup(const LogSetup& setup);
} // namespace FraxoInfo
