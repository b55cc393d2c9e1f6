#pragma once

#include <Platform/Win32Types.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// How the display scales, and whether this process scales its windows itself.
///
/// Results are dots per inch (96 at 100 % scaling, 144 at 150 %), never a scale factor. Nothing throws.
/// Thread-safety: no shared state; any thread may call.
/// ```cpp
/// PerMonitorDPIHelper::SetPerMonitorDPIAware(); // before the first window
/// const double scale = PerMonitorDPIHelper::GetDpiForWindow(window) / 96;
/// ```
class SHAREDUTILITIES_EXPORT PerMonitorDPIHelper final
{
public:
    PerMonitorDPIHelper() = delete;

    /// Declares that this process scales its windows itself, for each monitor. Call it before the first window.
    /// @return false when that failed, including when the awareness was already set: it can be set only once
    static bool SetPerMonitorDPIAware();

    /// Asks the system for this process's awareness. Leaves a handle of this process open: ask rarely.
    /// @param awareness may only be relied on when the result is true
    static bool GetPerMonitorDPIAware(PROCESS_DPI_AWARENESS* awareness);

    /// The horizontal scaling of the monitor that shows most of the window, or is nearest to it; a handle that is not
    /// a window's gets a monitor as well. 96 when the monitor cannot be asked.
    static double GetDpiForWindow(HWND window);

    static double GetSystemDPI(); ///< The horizontal scaling of the screen as a whole.
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
