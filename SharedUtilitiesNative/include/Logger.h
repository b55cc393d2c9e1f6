#pragma once

#include <Quenlor/NativeLogging.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The one logger of the calling program. Every program of the family logs through it, so that one configuration file
/// steers them all; its form, and where records go, is told in docs/logging.md.
///
/// The file is "FraxoPro.log.xml": the one beside the program's executable, else the one in
/// DirectoryConfig::GetProgramDataDirectory. The logger has the name of the executable without folder and extension.
///
/// Nothing here throws. Thread-safety: any thread may call; threads that race for the first call may each configure the
/// engine and get the same logger.
class SHAREDUTILITIES_EXPORT Logger final
{
public:
    Logger() = delete;

    /// Starts the logging engine with this program's configuration, and chooses the logger. Call it first of all in the
    /// start-up thread. Does nothing when there is a logger already.
    static void Initialize();

    /// The program's logger, after Initialize if nobody has called that. The same until the process is gone.
    /// @return null only when the engine has none to give, for lack of memory; the next call tries again
    static NativeLogging::ILogger* Get();
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
