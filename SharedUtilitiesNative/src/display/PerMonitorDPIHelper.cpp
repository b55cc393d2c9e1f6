#include "PerMonitorDPIHelper.h"

#include <string>

#include <Platform/Win32.h>

#include "core/Trace.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
bool PerMonitorDPIHelper::SetPerMonitorDPIAware()
{
    return ::SetProcessDpiAwareness(PROCESS_PER_MONITOR_DPI_AWARE) == S_OK;
}

bool PerMonitorDPIHelper::GetPerMonitorDPIAware(PROCESS_DPI_AWARENESS* awareness)
{
    // Left open on purpose: asked rarely, at start-up.
    const HANDLE process = ::OpenProcess(PROCESS_ALL_ACCESS, FALSE, ::GetCurrentProcessId());
    return ::GetProcessDpiAwareness(process, awareness) == S_OK;
}

double PerMonitorDPIHelper::GetDpiForWindow(HWND window)
{
    constexpr double unscaled = 96.0;
    const HMONITOR monitor = ::MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST);
    UINT dpiX = 0, dpiY = 0;
    return FAILED(::GetDpiForMonitor(monitor, MDT_EFFECTIVE_DPI, &dpiX, &dpiY)) ? unscaled : dpiX;
}

double PerMonitorDPIHelper::GetSystemDPI()
{
    const HDC screen = ::GetDC(nullptr);
    const int dpi = ::GetDeviceCaps(screen, LOGPIXELSX);
    ::ReleaseDC(nullptr, screen);
    if (trace)
        trace->push_back({Source::Kind::System, "the screen's dots per inch", std::to_string(dpi), true});
    return dpi;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
