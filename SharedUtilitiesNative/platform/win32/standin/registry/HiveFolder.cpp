#include "registry/HiveFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "posix/NextVersion.h"
#include "posix/RetryInterrupted.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
using Posix::FileDescriptor;

constexpr int MaxLinks = 40; // as the kernel's

FileDescriptor OpenAt(const FileDescriptor& folder, const std::string& name, int flags, mode_t mode = 0)
{
    FileDescriptor file{Posix::RetryInterrupted(
        [&] { return ::openat(folder.get(), name.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode); })};
    Require(static_cast<bool>(file));
    return file;
}

void CheckOwner(const FileDescriptor& folder)
{
    if (StatusOf(folder).st_uid != ::geteuid())
        Throw(EACCES);
}

std::string TargetOf(const FileDescriptor& link)
{
    std::array<char, PATH_MAX> buffer;
    const ssize_t length = ::readlinkat(link.get(), "", buffer.data(), buffer.size());
    Require(length >= 0);
    return {buffer.data(), static_cast<std::size_t>(length)};
}

/// The entry itself, even when it is a link. None when it is missing.
FileDescriptor Look(const FileDescriptor& folder, const std::string& name)
{
    FileDescriptor entry{
        Posix::RetryInterrupted([&] { return ::openat(folder.get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC); })};
    Require(entry || errno == ENOENT);
    return entry;
}

FileDescriptor MakeFolder(const FileDescriptor& parent, const std::string& name, mode_t mode)
{
    const bool isNew = ::mkdirat(parent.get(), name.c_str(), mode) == 0;
    Require(isNew || errno == EEXIST); // made by another process
    FileDescriptor folder = OpenAt(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    CheckOwner(folder);
    Require(!isNew || ::fchmod(folder.get(), mode) == 0);
    return folder;
}
} // namespace

void Throw(int error)
{
    throw std::system_error{error, std::generic_category()};
}

void Require(bool isDone)
{
    if (!isDone)
        Throw(errno);
}

struct stat StatusOf(const FileDescriptor& file)
{
    struct stat status;
    Require(::fstat(file.get(), &status) == 0);
    return status;
}

HivePlace FindPlace(const std::string& path, std::optional<mode_t> newFolders)
{
    const bool isRoot = ::geteuid() == 0;
    HivePlace place{OpenAt({}, "/", O_PATH), {}};
    std::string rest = path;
    for (int links = 0;;)
    {
        rest.erase(0, rest.find_first_not_of('/'));
        const std::size_t end = std::min(rest.find('/'), rest.size());
        const std::string name = rest.substr(0, end);
        const bool isLast = rest.find_first_not_of('/', end) == std::string::npos;
        FileDescriptor entry = Look(place.folder, name);
        if (!entry && !isLast)
        {
            if (!newFolders)
                return place;
            entry = MakeFolder(place.folder, name, *newFolders);
        }
        if (entry)
        {
            const struct stat status = StatusOf(entry);
            if (isRoot && status.st_uid != 0)
                Throw(EACCES);
            if (S_ISLNK(status.st_mode))
            {
                if (++links > MaxLinks)
                    Throw(ELOOP);
                rest.replace(0, end, TargetOf(entry));
                if (rest.starts_with('/'))
                    place.folder = OpenAt({}, "/", O_PATH);
                continue;
            }
        }
        if (isLast)
        {
            if (newFolders)
                CheckOwner(place.folder);
            place.name = name;
            return place;
        }
        place.folder = std::move(entry);
        rest.erase(0, end);
    }
}

void CheckWritable(const HivePlace& place)
{
    const auto canWrite = [&](const char* name)
    { return ::faccessat(place.folder.get(), name, W_OK, AT_EACCESS) == 0; };
    Require(canWrite("."));
    if (place.name.empty())
        return;
    CheckOwner(place.folder);
    Require(canWrite(place.name.c_str()) || errno == ENOENT);
}

void SyncNames(const FileDescriptor& folder)
{
    Require(Posix::Sync(OpenAt(folder, ".", O_RDONLY | O_DIRECTORY)));
}

void SyncParents(const FileDescriptor& folder)
{
    FileDescriptor child = OpenAt(folder, ".", O_PATH);
    for (;;)
    {
        FileDescriptor parent = OpenAt(child, "..", O_PATH);
        const struct stat status = StatusOf(parent);
        const struct stat former = StatusOf(child);
        if (status.st_dev != former.st_dev || status.st_ino == former.st_ino)
            return; // the top of the file system
        const FileDescriptor readable{
            Posix::RetryInterrupted([&] { return ::openat(parent.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); })};
        Require(readable ? Posix::Sync(readable) : errno == EACCES); // in which this account has made nothing
        child = std::move(parent);
    }
}

void AppendToFile(const FileDescriptor& folder, const std::string& name, std::string_view text, mode_t mode)
{
    const FileDescriptor file = OpenAt(folder, name, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK, mode);
    const struct stat status = StatusOf(file);
    if (!S_ISREG(status.st_mode) || status.st_uid != ::geteuid() || status.st_nlink != 1)
        Throw(EACCES); // a second name may be that of a file elsewhere
    Require(Posix::WriteAll(file, text) && Posix::Sync(file));
    SyncNames(folder);
}

FileLock::FileLock(const FileDescriptor& folder, const std::string& name)
    : m_file{OpenAt(folder, name, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR)}
{
    Require(Posix::RetryInterrupted([&] { return ::flock(m_file.get(), LOCK_EX); }) == 0);
}

FileLock::~FileLock()
{
    ::flock(m_file.get(), LOCK_UN); // closing would not do if another thread has forked meanwhile
}
} // namespace Quenlor::StandIn::Registry
