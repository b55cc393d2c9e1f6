#include "logging/System.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "posix/Environment.h"
#include "posix/RetryInterrupted.h"

namespace Quenlor::NativeLogging
{
namespace
{
std::error_code LastError() noexcept
{
    return {errno, std::system_category()};
}
} // namespace

LogFile::LogFile(const std::filesystem::path& path, std::error_code& error) noexcept
    : m_handle{::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0666)}
{
    error = m_handle < 0 ? LastError() : std::error_code{};
}

LogFile::~LogFile()
{
    if (m_handle >= 0)
        ::close(static_cast<int>(m_handle));
}

std::error_code LogFile::Append(std::string_view text) noexcept
{
    while (!text.empty()) // once, unless the disk is full
    {
        const ssize_t written =
            Posix::RetryInterrupted([&] { return ::write(static_cast<int>(m_handle), text.data(), text.length()); });
        if (written < 0)
            return LastError();
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

void WriteToConsole(std::FILE* stream, std::string_view text)
{
    std::fwrite(text.data(), 1, text.length(), stream);
    std::fflush(stream);
}

void WriteToDebugger(std::string_view) {}

std::optional<std::string> EnvironmentVariable(const std::string& name)
{
    return Posix::EnvironmentVariable(name.c_str());
}

std::string ProcessNumber()
{
    return std::to_string(::getpid());
}
} // namespace Quenlor::NativeLogging
