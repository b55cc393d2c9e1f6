#include "posix/ReadFile.h"

#include <array>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "posix/RetryInterrupted.h"

namespace Quenlor::Posix
{
RegularFile OpenFile(const std::string& path, int flags, int folder)
{
    RegularFile file{FileDescriptor{RetryInterrupted(
        [&] { return ::openat(folder, path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | flags); })}};
    if (!file || ::fstat(file.get(), &file.status) != 0)
        return {};
    if (S_ISREG(file.status.st_mode))
        return file;
    const int error = S_ISDIR(file.status.st_mode) ? EISDIR : EINVAL;
    file = {};
    errno = error;
    return file;
}

std::optional<std::string> ReadAll(const RegularFile& file)
{
    std::string text;
    std::array<char, 65536> part;
    while (text.size() <= LargestFile && file.status.st_size <= off_t{LargestFile}) // what cannot fit need not be read
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
