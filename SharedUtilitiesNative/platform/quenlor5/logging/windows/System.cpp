#include "logging/System.h"

#include <io.h>
#include <tuple>

#include <Platform/Win32.h>
#include <Quenlor/QnStringUtilities.h>

#include "logging/Configuration.h"

namespace Quenlor::NativeLogging
{
namespace
{
std::error_code LastError() noexcept
{
    return {static_cast<int>(::GetLastError()), std::system_category()};
}

constexpr std::intptr_t Closed = -1; // INVALID_HANDLE_VALUE as a number

HANDLE HandleOf(std::intptr_t handle) noexcept
{
    return reinterpret_cast<HANDLE>(handle);
}

std::intptr_t Open(const std::filesystem::path& path, DWORD access, DWORD disposition) noexcept
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return reinterpret_cast<std::intptr_t>(
        ::CreateFileW(path.c_str(), access, shareAll, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

auto Identity(const BY_HANDLE_FILE_INFORMATION& file) noexcept
{
    return std::tuple{file.dwVolumeSerialNumber, file.nFileIndexHigh, file.nFileIndexLow};
}

WString Wide(std::string_view text)
{
    WString wide;
    QnStringUtilities::Utf8ToWChar(wide, text.data(), text.length());
    return wide;
}
} // namespace

LogFile::LogFile(const std::filesystem::path& path, std::error_code& error) noexcept
    : m_handle{Open(path, FILE_APPEND_DATA | FILE_READ_DATA, OPEN_ALWAYS)} // the right to read is for the lock
{
    if (m_handle == Closed)
        error = LastError();
    else
        error = ::GetFileType(HandleOf(m_handle)) == FILE_TYPE_DISK ? std::error_code{}
                                                                    : make_error_code(std::errc::not_supported);
}

LogFile::~LogFile()
{
    if (m_handle != Closed)
        ::CloseHandle(HandleOf(m_handle));
}

std::optional<std::uintmax_t> LogFile::SizeAt(const std::filesystem::path& path) const noexcept
{
    const std::intptr_t other = Open(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
    const DWORD failure = ::GetLastError();
    BY_HANDLE_FILE_INFORMATION own{};
    BY_HANDLE_FILE_INFORMATION named{};
    ::GetFileInformationByHandle(HandleOf(m_handle), &own);
    bool isGone = failure == ERROR_FILE_NOT_FOUND;
    if (other != Closed)
    {
        ::GetFileInformationByHandle(HandleOf(other), &named);
        ::CloseHandle(HandleOf(other));
        isGone = Identity(own) != Identity(named);
    }
    return isGone ? std::nullopt : std::optional{std::uintmax_t{own.nFileSizeHigh} << 32 | own.nFileSizeLow};
}

bool LogFile::TryLock() const noexcept
{
    OVERLAPPED farBeyondTheText{};
    farBeyondTheText.Offset = farBeyondTheText.OffsetHigh = 0x7FFFFFFF;
    return ::LockFileEx(HandleOf(m_handle), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                        &farBeyondTheText) ||
           ::GetLastError() != ERROR_LOCK_VIOLATION;
}

std::error_code LogFile::Append(std::string_view text, std::size_t& written) noexcept
{
    DWORD count = 0;
    const bool isWritten =
        ::WriteFile(HandleOf(m_handle), text.data(), static_cast<DWORD>(text.length()), &count, nullptr);
    written = count;
    return isWritten ? std::error_code{} : LastError();
}

void RemoveFile(const std::filesystem::path& path) noexcept
{
    ::DeleteFileW(path.c_str());
}

std::string NativeName(const QnFileName& file)
{
    return file.GetNameUtf8().ToStdString();
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

std::string EnvironmentVariable(const std::string& name)
{
    std::wstring value(32767, L'\0'); // no value is longer
    ::GetEnvironmentVariableW(Wide(name).c_str(), value.data(), static_cast<DWORD>(value.size()));
    Utf8String narrow;
    QnStringUtilities::WCharToUtf8(narrow, value.c_str());
    return narrow.ToStdString();
}

std::string ProcessNumber()
{
    return std::to_string(::GetCurrentProcessId());
}
} // namespace Quenlor::NativeLogging
