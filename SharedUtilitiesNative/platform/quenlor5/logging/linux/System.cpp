#include "logging/System.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "logging/Configuration.h"
#include "posix/Environment.h"
#include "posix/RetryInterrupted.h"

namespace Quenlor::NativeLogging
{
namespace
{
// O_NONBLOCK: opening a pipe in the file's place must not wait for a reader.
constexpr int OpeningFlags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

std::error_code LastError() noexcept
{
    return {errno, std::system_category()};
}

int Descriptor(std::intptr_t handle) noexcept
{
    return static_cast<int>(handle);
}
} // namespace

LogFile::LogFile(const std::filesystem::path& path, std::error_code& error) noexcept
    : m_handle{Posix::RetryInterrupted([&] { return ::open(path.c_str(), OpeningFlags, 0666); })}
{
    struct stat status;
    if (m_handle < 0 || ::fstat(Descriptor(m_handle), &status) != 0)
        error = LastError();
    else
        error = S_ISREG(status.st_mode) ? std::error_code{} : make_error_code(std::errc::not_supported);
}

LogFile::~LogFile()
{
    if (m_handle >= 0)
        ::close(Descriptor(m_handle));
}

std::optional<std::uintmax_t> LogFile::SizeAt(const std::filesystem::path& path) const noexcept
{
    struct stat own;
    struct stat named;
    if (::fstat(Descriptor(m_handle), &own) != 0)
        return 0;
    const bool isGone =
        ::stat(path.c_str(), &named) == 0 ? own.st_dev != named.st_dev || own.st_ino != named.st_ino : errno == ENOENT;
    return isGone ? std::nullopt : std::optional{static_cast<std::uintmax_t>(own.st_size)};
}

bool LogFile::TryLock() const noexcept
{
    return ::flock(Descriptor(m_handle), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

std::error_code LogFile::Append(std::string_view text, std::size_t& written) noexcept
{
    written = 0;
    while (written < text.length()) // once, unless the disk is full
    {
        const ssize_t count = Posix::RetryInterrupted(
            [&] { return ::write(Descriptor(m_handle), text.data() + written, text.length() - written); });
        if (count < 0)
            return LastError();
        written += static_cast<std::size_t>(count);
    }
    return {};
}

void RemoveFile(const std::filesystem::path& path) noexcept
{
    ::unlink(path.c_str());
}

std::string NativeName(const QnFileName& file)
{
    return file.ToNativePath();
}

void WriteToConsole(std::FILE* stream, std::string_view text)
{
    std::fwrite(text.data(), 1, text.length(), stream);
    std::fflush(stream);
}

void WriteToDebugger(std::string_view) {}

std::string EnvironmentVariable(const std::string& name)
{
    return Posix::EnvironmentVariable(name.c_str()).value_or("");
}

std::string ProcessNumber()
{
    return std::to_string(::getpid());
}
} // namespace Quenlor::NativeLogging
