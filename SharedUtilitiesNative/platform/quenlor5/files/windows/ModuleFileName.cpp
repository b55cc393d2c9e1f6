#include <Quenlor/QnFileName.h>

#include <string>

#include <Platform/Win32.h>

namespace Quenlor
{
QuenlorStatus QnGetModuleFileName(QnFileName& out, void* module)
{
    out = {};
    std::wstring path(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD length =
            ::GetModuleFileNameW(static_cast<HMODULE>(module), path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            return QuenlorStatus::NotFound;
        if (length < path.size())
            break;
        path.resize(path.size() * 2); // a full buffer means that the name was cut
    }
    out.SetName(path.c_str());
    return QuenlorStatus::Success;
}
} // namespace Quenlor
