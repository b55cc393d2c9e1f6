#include "posix/ReadFile.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

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
    struct stat status;
    if (::fstat(file.get(), &status) != 0)
        return {};
    std::string text;
    auto expected = static_cast<std::size_t>(status.st_size);
    for (std::size_t length = 0; expected <= limit; expected = length * 2) // it may grow meanwhile
    {
        text.resize(expected + 1); // one more, to see the end
        while (length < text.size())
        {
            const ssize_t count =
                RetryInterrupted([&] { return ::read(file.get(), text.data() + length, text.size() - length); });
            if (count < 0)
                return {};
            if (count == 0)
            {
                text.resize(length);
                return text;
            }
            length += static_cast<std::size_t>(count);
        }
    }
    errno = EFBIG;
    return {};
}
} // namespace Quenlor::Posix
