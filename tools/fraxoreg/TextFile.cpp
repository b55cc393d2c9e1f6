#include "TextFile.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "Operations.h"
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
    NextVersion(std::string path, mode_t mode)
        : m_path{std::move(path)},
          m_temporary{m_path + '.' + std::to_string(::getpid()) + ".tmp"},
          m_file{::open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode)}
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

bool FileExists(const std::string& path) noexcept
{
    return ::access(path.c_str(), F_OK) == 0;
}

void WriteTextFile(const std::string& path, std::string_view text, mode_t mode)
try
{
    const bool exists = FileExists(path);
    // Through a link, so that the link stays one.
    const std::string target = exists ? std::filesystem::canonical(path).string() : path;
    struct stat former;
    if (exists && ::stat(target.c_str(), &former) == 0 && !S_ISREG(former.st_mode))
        throw Failure{"Unable to write to the file.\n" + path + " is not a file; - is the standard output."};
    NextVersion next{target, mode};
    next.Write(text);
    next.PutInPlace();
}
catch (const std::system_error& error)
{
    throw Failure{"Unable to write to the file.\n" + path + ": " + error.code().message() + '.'};
}
} // namespace FraxoReg
