#pragma once

#include <Quenlor/QnFileName.h>
#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>

#include "DirectoryConfig.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// How a program's logger is set up.
struct LogConfigurationChoice
{
    QnFileName besideExecutable; ///< The configuration file that wins when it exists.
    QnFileName inProgramData;    ///< The one used otherwise; empty when its folder is unknown.
    bool isBesideExecutable = false;
    WString loggerName;

    const QnFileName& File() const { return isBesideExecutable ? besideExecutable : inProgramData; }
};

/// A folder of the library that file names in the configuration can start with.
struct LogFolderVariable
{
    const char* name;
    Utf8String (*folder)();
};

constexpr LogFolderVariable LogFolderVariables[] = {
    {"ProgramData", DirectoryConfig::GetProgramDataDirectory},
    {"LocalAppData", DirectoryConfig::GetLocalAppDataDirectory},
    {"CrashReports", DirectoryConfig::GetCrashReportsDirectory},
};

/// @param executable the full path of the program's executable
LogConfigurationChoice ChooseLogConfiguration(const QnFileName& executable);
} // namespace Quenlor::Fraxo::SharedUtilities::Native
