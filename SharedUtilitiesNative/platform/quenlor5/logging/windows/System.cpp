#include "logging/System.h"

#include <io.h>

#include <Platform/Win32.h>
#include <Quenlor/QnStringUtilities.h>

namespace Quenlor::NativeLogging
{
namespace
{
std::error_code LastError() noexcept
{
    return {static_cast<int>(::GetLastError()), std::system_category()};
}

HANDLE HandleOf(std::intptr_t handle) noexcept
{
    return reinterpret_cast<HANDLE>(handle);
}

WString Wide(std::string_view text)
{
    WString wide;
    QnStringUtilities::Utf8ToWChar(wide, text.data(), text.length());
    return wide;
}
} // namespace

LogFile::LogFile(const std::filesystem::path& path, std::error_code& error) noexcept
    : m_handle{reinterpret_cast<std::intptr_t>(::CreateFileW(path.c_str(), FILE_APPEND_DATA,
                                                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                                             nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr))}
{
    error = HandleOf(m_handle) == INVALID_HANDLE_VALUE ? LastError() : std::error_code{};
}

LogFile::~LogFile()
{
    if (HandleOf(m_handle) != INVALID_HANDLE_VALUE)
        ::CloseHandle(HandleOf(m_handle));
}

std::error_code LogFile::Append(std::string_view text) noexcept
{
    DWORD written = 0;
    const bool isWritten =
        ::WriteFile(HandleOf(m_handle), text.data(), static_cast<DWORD>(text.length()), &written, nullptr);
    return isWritten ? std::error_code{} : LastError();
}

void WriteToConsole(std::FILE* stream, std::string_view text)
{
    const HANDLE handle = HandleOf(::_get_osfhandle(::_fileno(stream)));
    DWORD mode = 0;
    if (::GetConsoleMode(handle, &mode))
    {
        const WString wide = Wide(text);
        ::WriteConsoleW(handle, wide.c_str(), static_cast<DWORD>(wide.length()), nullptr, nullptr);
        return;
    }
    std::fwrite(text.data(), 1, text.length(), stream);
    std::fflush(stream);
}

void WriteToDebugger(std::string_view text)
{
    ::OutputDebugStringW(Wide(text).c_str());
}

std::optional<std::string> EnvironmentVariable(const std::string& name)
{
    const WString wideName = Wide(name);
    std::wstring value;
    DWORD size = 128;
    do // asked again with the size it tells, which can have grown meanwhile
    {
        value.resize(size);
        ::SetLastError(ERROR_SUCCESS); // an empty value has the length 0 as well
        size = ::GetEnvironmentVariableW(wideName.c_str(), value.data(), size);
        if (size == 0 && ::GetLastError() == ERROR_ENVVAR_NOT_FOUND)
            return std::nullopt;
    } while (size > value.size());
    Utf8String narrow;
    QnStringUtilities::WCharToUtf8(narrow, value.data(), size);
    return narrow.ToStdString();
}

std::string ProcessNumber()
{
    return std::to_string(::GetCurrentProcessId());
}
} // namespace Quenlor::NativeLogging
