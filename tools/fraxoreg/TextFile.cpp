#include "TextFile.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "Operations.h"
#include "posix/FileDescriptor.h"
#include "posix/RetryInterrupted.h"

namespace FraxoReg
{
namespace
{
bool WriteAll(int file, std::string_view text)
{
    while (!text.empty())
    {
        const ssize_t count = Quenlor::Posix::RetryInterrupted([&] { return ::write(file, text.data(), text.size()); });
        if (count < 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return ::fsync(file) == 0;
}
} // namespace

bool FileExists(const std::string& path) noexcept
{
    return ::access(path.c_str(), F_OK) == 0;
}

void WriteTextFile(const std::string& path, std::string_view text, mode_t mode)
{
    constexpr char refusal[] = "Unable to write to the file.\n";
    std::error_code none;
    const std::filesystem::path real = std::filesystem::canonical(path, none); // so that a link stays one
    const std::string target = real.empty() ? path : real.string();
    struct stat former;
    if (::stat(target.c_str(), &former) == 0 && !S_ISREG(former.st_mode))
        throw Failure{refusal + path + " is not a file; - is the standard output."};

    const std::string next = target + '.' + std::to_string(::getpid()) + ".tmp";
    const Quenlor::Posix::FileDescriptor file{::open(next.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode)};
    if (file && WriteAll(file.get(), text) && ::rename(next.c_str(), target.c_str()) == 0)
        return;
    const int error = errno;
    if (file)
        ::unlink(next.c_str());
    throw Failure{refusal + path + ": " + std::generic_category().message(error) + '.'};
}
} // namespace FraxoReg
