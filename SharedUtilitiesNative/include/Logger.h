#pragma once

#include <Quenlor/NativeLogging.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The one logger of the calling program. Every program of the family logs through it, so that one configuration file,
/// described in docs/logging.md, controls them all.
///
///     Logger::Initialize(); // in the start-up thread
///     Logger::Get()->Warning("The section database is older than this program");
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

    /// Starts the logging engine with this program's configuration, and chooses the logger. Call it first in the
    /// start-up thread. Does nothing when there is a logger already.
    static void Initialize();

    /// The program's logger, after Initialize if that was not called before. The same until the process is gone.
    /// @return null only when memory runs out; the next call tries again
    static NativeLogging::ILogger* Get();
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
