#include "posix/ReadFile.h"

#include <array>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "posix/RetryInterrupted.h"

namespace Quenlor::Posix
{
FileDescriptor OpenFile(const std::string& path, int flags, int folder)
{
    FileDescriptor file{RetryInterrupted(
        [&] { return ::openat(folder, path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | flags); })};
    struct stat status;
    if (!file || ::fstat(file.get(), &status) != 0)
        return {};
    if (S_ISREG(status.st_mode))
        return file;
    file = {};
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return file;
}

std::optional<std::string> ReadAll(const FileDescriptor& file, std::size_t limit)
{
    std::string text;
    std::array<char, 65536> part;
    struct stat status = {};
    ::fstat(file.get(), &status); // what cannot fit need not be read
    while (text.size() <= limit && static_cast<std::size_t>(status.st_size) <= limit)
    {
        const ssize_t count = RetryInterrupted([&] { return ::read(file.get(), part.data(), part.size()); });
        if (count <= 0)
            return count == 0 ? std::optional{std::move(text)} : std::nullopt;
        text.append(part.data(), static_cast<std::size_t>(count));
    }
    errno = EFBIG;
    return {};
}
} // namespace Quenlor::Posix
