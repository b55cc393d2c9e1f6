#pragma once

#include <Quenlor/QnFileName.h>
#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// Where the parts of this release lie on this machine.
///
/// Results are UTF-8 unless they are a QnFileName. A ...Directory result as text ends in a separator, so a file name
/// can be appended as plain text. Nothing is created and existence is not checked, except where a member says so.
/// Without an installation record, results below the installation root are relative.
///
/// Nothing is cached: every call asks the environment and the registry again.
/// Thread-safety: no shared state. Any thread may call, provided that none changes the environment meanwhile.
class SHAREDUTILITIES_EXPORT DirectoryConfig final
{
public:
    DirectoryConfig() = delete;

    /// Whether this process runs from a developer's build output instead of an installation: the environment variable
    /// FRAXO_PRO_ROOT_DIRECTORY is set and its path occurs in the executable's, letter case and spelling aside.
    static bool IsRunningFromOutput();

    /// The installation root. When running from output the value of FRAXO_PRO_ROOT_DIRECTORY, otherwise "RootDir" of
    /// the installation record, HKEY_CLASSES_ROOT\FraxoPro\22.00.00. Empty, and so relative, without a record.
    static Utf8String GetFRAXOProRoot();

    /// The folder of the process's executable, without a trailing separator unless it is a root.
    static QnFileName GetCurrentExeDirectory();
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
