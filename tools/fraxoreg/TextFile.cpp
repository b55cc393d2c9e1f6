#include "TextFile.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "Failure.h"
#include "posix/FileDescriptor.h"

namespace FraxoReg
{
namespace
{
using Quenlor::Posix::FileDescriptor;

/// A file beside `path`, which takes its place or is removed.
class NextVersion final
{
public:
    /// @throws std::system_error like all members
    explicit NextVersion(std::string path)
        : m_path{std::move(path)},
          m_temporary{m_path + '.' + std::to_string(::getpid()) + ".tmp"},
          m_file{::open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)}
    {
        Require(m_file.get());
    }
    NextVersion(const NextVersion&) = delete;
    NextVersion& operator=(const NextVersion&) = delete;
    ~NextVersion()
    {
        if (m_file && !m_isInPlace)
            ::unlink(m_temporary.c_str());
    }

    void Write(std::string_view text)
    {
        while (!text.empty())
            text.remove_prefix(Require(::write(m_file.get(), text.data(), text.size())));
    }

    void KeepMode(const struct stat& former) { Require(::fchmod(m_file.get(), former.st_mode & 0777)); }

    void PutInPlace()
    {
        Require(::fsync(m_file.get()));
        Require(::rename(m_temporary.c_str(), m_path.c_str()));
        m_isInPlace = true;
    }

private:
    static std::size_t Require(ssize_t result)
    {
        if (result < 0)
            throw std::system_error{errno, std::generic_category()};
        return static_cast<std::size_t>(result);
    }

    std::string m_path;
    std::string m_temporary;
    FileDescriptor m_file;
    bool m_isInPlace = false;
};
} // namespace

std::string ReadTextFile(const std::string& path)
{
    const FileDescriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    std::string text;
    std::array<char, 0x10000> buffer;
    ssize_t count = -1;
    while (file && (count = ::read(file.get(), buffer.data(), buffer.size())) > 0)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    if (count < 0)
        throw Failure{"Error opening the file. There may be a disk or file system error.\n" + path + ": " +
                      std::generic_category().message(errno) + '.'};
    return text;
}

bool FileExists(const std::string& path) noexcept
{
    return ::access(path.c_str(), F_OK) == 0;
}

void WriteTextFile(const std::string& path, std::string_view text)
try
{
    const bool exists = FileExists(path);
    // Through a link, so that the link stays one.
    const std::string target = exists ? std::filesystem::canonical(path).string() : path;
    struct stat former;
    const bool isReplaced = exists && ::stat(target.c_str(), &former) == 0;
    if (isReplaced && !S_ISREG(former.st_mode))
        throw Failure{"Unable to write to the file.\n" + path + " is no file. Use - for the standard output."};
    NextVersion next{target};
    next.Write(text);
    if (isReplaced)
        next.KeepMode(former);
    next.PutInPlace();
}
catch (const std::system_error& error)
{
    throw Failure{"Unable to write to the file.\n" + path + ": " + error.code().message() + '.'};
}
} // namespace FraxoReg
