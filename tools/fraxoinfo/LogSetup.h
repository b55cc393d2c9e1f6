#pragma once

#include <string>
#include <vector>

#include "ForTools.h"

namespace FraxoInfo
{
/// How the log of a program is set up on this machine.
struct LogSetup
{
    Quenlor::Fraxo::SharedUtilities::Native::LogConfigurationChoice choice;
    bool exists = false;            ///< Whether the chosen configuration file exists.
    std::vector<std::string> lines; ///< The level, and each appender with where it writes.
    std::vector<std::string> faults;
    std::vector<std::string> notWritable; ///< Its files that this user cannot write, as `lines` shows them.
    bool isSilent = false;                ///< Whether no record goes anywhere.
};

/// The executable of this process.
Quenlor::QnFileName ThisProgram();

/// Reads the configuration as the program would, and checks all of it. No log file is opened.
/// @param executable the full path of the program's executable
/// @param expand whether paths with `${env:...}` are shown with the variable's value, which may be secret
LogSetup ExamineLog(const Quenlor::QnFileName& executable, bool expand);

std::string Format(const LogSetup& setup);
} // namespace FraxoInfo
