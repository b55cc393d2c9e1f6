#include <Platform/Win32.h>

#include <atomic>

struct HDC__
{
    int dpi;
};

namespace
{
HDC__ screen{96};

constexpr int NotSet = -1;
std::atomic<int> processAwareness{NotSet};
} // namespace

HRESULT SetProcessDpiAwareness(PROCESS_DPI_AWARENESS awareness)
{
    if (awareness < PROCESS_DPI_UNAWARE || awareness > PROCESS_PER_MONITOR_DPI_AWARE)
        return E_INVALIDARG;
    int expected = NotSet;
    return processAwareness.compare_exchange_strong(expected, awareness) ? S_OK : E_ACCESSDENIED;
}

HRESULT GetProcessDpiAwareness(HANDLE, PROCESS_DPI_AWARENESS* awareness)
{
    if (!awareness)
        return E_INVALIDARG;
    const int set = processAwareness;
    *awareness = set == NotSet ? PROCESS_DPI_UNAWARE : static_cast<PROCESS_DPI_AWARENESS>(set);
    return S_OK;
}

HMONITOR MonitorFromWindow(HWND, DWORD)
{
    return nullptr;
}

HRESULT GetDpiForMonitor(HMONITOR, MONITOR_DPI_TYPE, UINT*, UINT*)
{
    return E_INVALIDARG;
}

HDC GetDC(HWND window)
{
    return window ? nullptr : &screen;
}

int ReleaseDC(HWND, HDC context)
{
    return context == &screen;
}

int GetDeviceCaps(HDC context, int index)
{
    return context && index == LOGPIXELSX ? context->dpi : 0;
}
