#pragma once

#include <Quenlor/QnFileName.h>
#include <Quenlor/WString.h>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// How a program's logger is set up.
struct LogConfigurationChoice
{
    QnFileName besideExecutable; ///< The configuration file that wins when it exists.
    QnFileName inProgramData;    ///< The one that is taken otherwise; empty when nobody can say where it is.
    bool isBesideExecutable = false;
    WString loggerName;

    const QnFileName& File() const { return isBesideExecutable ? besideExecutable : inProgramData; }
};

/// @param executable the full path of the program's executable
LogConfigurationChoice ChooseLogConfiguration(const QnFileName& executable);
} // namespace Quenlor::Fraxo::SharedUtilities::Native
