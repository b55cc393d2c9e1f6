#include "registry/HiveFile.h"

#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/file.h>
#include <system_error>
#include <tuple>
#include <unistd.h>

#include "posix/RetryInterrupted.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
using Posix::RetryInterrupted;

/// Throws when the call fails.
template<typename Call>
auto Checked(Call call)
{
    const auto result = RetryInterrupted(call);
    if (result < 0)
        ThrowSystemError();
    return result;
}

constexpr int ReadFlags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY; // returns at once whatever stands there

Posix::FileDescriptor Open(const std::string& path, int flags, mode_t mode = 0)
{
    return Posix::FileDescriptor{Checked([&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode); })};
}

struct stat StatusOf(const Posix::FileDescriptor& file)
{
    struct stat status;
    Checked([&] { return ::fstat(file.get(), &status); });
    return status;
}

void WriteAll(const Posix::FileDescriptor& file, std::string_view text)
{
    while (!text.empty())
        text.remove_prefix(
            static_cast<std::size_t>(Checked([&] { return ::write(file.get(), text.data(), text.size()); })));
}

void Sync(const Posix::FileDescriptor& file)
{
    Checked([&] { return ::fsync(file.get()); });
}

bool MeansMissing(int error) noexcept
{
    return error == ENOENT || error == ENOTDIR;
}

std::tuple<time_t, long> TimeOf(const FileVersion& version) noexcept
{
    return {version.Status().st_mtim.tv_sec, version.Status().st_mtim.tv_nsec};
}
} // namespace

void ThrowSystemError()
{
    throw std::system_error{errno, std::generic_category()};
}

FileVersion FileVersion::Of(const std::string& path)
{
    struct stat status;
    if (::stat(path.c_str(), &status) == 0)
        return FileVersion{status};
    if (!MeansMissing(errno))
        ThrowSystemError();
    return {};
}

bool FileVersion::operator==(const FileVersion& other) const noexcept
{
    if (!m_exists || !other.m_exists)
        return m_exists == other.m_exists;
    return TimeOf(*this) == TimeOf(other) && m_status.st_ino == other.m_status.st_ino &&
           m_status.st_dev == other.m_status.st_dev && m_status.st_size == other.m_status.st_size;
}

std::string FollowLinks(std::string path)
{
    for (int links = 0; links < 40; ++links)
    {
        std::array<char, PATH_MAX> buffer;
        const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
        if (length < 0 && (errno == EINVAL || MeansMissing(errno)))
            return path;
        if (length < 0)
            ThrowSystemError();
        const std::string target{buffer.data(), static_cast<std::size_t>(length)};
        path = target.starts_with('/') ? target : FolderOf(path).append("/").append(target);
    }
    errno = ELOOP;
    ThrowSystemError();
}

std::string ReadFile(const std::string& path, FileVersion& version)
{
    version = {};
    const Posix::FileDescriptor file{RetryInterrupted([&] { return ::open(path.c_str(), ReadFlags); })};
    if (!file && MeansMissing(errno))
        return {};
    if (!file)
        ThrowSystemError();
    const struct stat status = StatusOf(file);
    if (!S_ISREG(status.st_mode))
        throw std::system_error{EISDIR, std::generic_category()};
    // Taken before the text is read: what is written in between is another version then, and is read by the next call.
    version = FileVersion{status};
    std::string text(static_cast<std::size_t>(status.st_size) + 1, '\0');
    std::size_t length = 0;
    while (const ssize_t count = Checked([&] { return ::read(file.get(), &text[length], text.size() - length); }))
    {
        length += static_cast<std::size_t>(count);
        if (length == text.size())
            text.resize(length * 2);
    }
    text.resize(length);
    return text;
}

std::string FolderOf(const std::string& path)
{
    const std::size_t separator = path.rfind('/');
    return separator == 0 || separator == std::string::npos ? "/" : path.substr(0, separator);
}

void MakeFolder(const std::string& path, mode_t mode)
{
    int result = ::mkdir(path.c_str(), mode);
    if (result != 0 && errno == ENOENT && path != "/")
    {
        MakeFolder(FolderOf(path), mode);
        result = ::mkdir(path.c_str(), mode);
    }
    if (result == 0)
    {
        Checked([&] { return ::chmod(path.c_str(), mode); });
        Sync(Open(FolderOf(path), O_RDONLY | O_DIRECTORY));
    }
    else if (errno != EEXIST)
        ThrowSystemError();
}

void AppendToFile(const std::string& path, std::string_view text, mode_t mode)
{
    const Posix::FileDescriptor file = Open(path, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW, mode);
    WriteAll(file, text);
    Sync(file);
    Sync(Open(FolderOf(path), O_RDONLY | O_DIRECTORY));
}

void CheckReplaceable(const std::string& path)
{
    const auto canWrite = [](const std::string& name)
    { return ::faccessat(AT_FDCWD, name.c_str(), W_OK, AT_EACCESS) == 0; };
    if (!canWrite(path) && !MeansMissing(errno))
        ThrowSystemError();
    std::string folder = FolderOf(path);
    while (!canWrite(folder))
    {
        if (errno != ENOENT || folder == "/")
            ThrowSystemError();
        folder = FolderOf(folder);
    }
}

FileLock::FileLock(const std::string& path) : m_file{Open(path, O_RDWR | O_CREAT | O_NOFOLLOW, S_IRUSR | S_IWUSR)}
{
    Checked([&] { return ::flock(m_file.get(), LOCK_EX); });
}

FileLock::~FileLock()
{
    ::flock(m_file.get(), LOCK_UN); // closing would not do if another thread has forked meanwhile
}

Replacement::Replacement(std::string path)
    : m_path{std::move(path)}, m_temporary{m_path + ".new"}, m_folder{Open(FolderOf(m_path), O_RDONLY | O_DIRECTORY)}
{
    if (::unlink(m_temporary.c_str()) != 0 && errno != ENOENT)
        ThrowSystemError();
    m_file = Open(m_temporary, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, S_IRUSR | S_IWUSR);
}

Replacement::~Replacement()
{
    if (!m_isPublished)
        ::unlink(m_temporary.c_str());
}

void Replacement::Write(std::string_view text, mode_t mode, const FileVersion& old)
{
    WriteAll(m_file, text);
    [[maybe_unused]] const int kept =
        old.Exists() ? ::fchown(m_file.get(), old.Status().st_uid, old.Status().st_gid) : 0;
    Checked([&] { return ::fchmod(m_file.get(), mode); });
    MakeLaterThan(old);
    Registry::Sync(m_file);
}

void Replacement::MakeLaterThan(const FileVersion& old)
{
    m_version = FileVersion{StatusOf(m_file)};
    if (!old.Exists() || TimeOf(m_version) > TimeOf(old))
        return;
    for (const time_t seconds : {0, 2}) // some file systems store whole seconds alone, or even ones
    {
        struct timespec time = old.Status().st_mtim;
        time.tv_sec += seconds;
        if (++time.tv_nsec == 1'000'000'000)
        {
            time.tv_nsec = 0;
            ++time.tv_sec;
        }
        const std::array<struct timespec, 2> times{time, time};
        Checked([&] { return ::futimens(m_file.get(), times.data()); });
        m_version = FileVersion{StatusOf(m_file)};
        if (TimeOf(m_version) > TimeOf(old))
            return;
    }
    throw std::system_error{EIO, std::generic_category()};
}

void Replacement::Publish()
{
    Checked([&] { return ::rename(m_temporary.c_str(), m_path.c_str()); });
    m_isPublished = true;
}

void Replacement::Sync() const
{
    Registry::Sync(m_folder);
}
} // namespace Quenlor::StandIn::Registry
