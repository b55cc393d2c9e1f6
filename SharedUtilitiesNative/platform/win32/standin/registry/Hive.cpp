#include "registry/Hive.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <system_error>
#include <utility>

#include "posix/NextVersion.h"
#include "posix/ReadFile.h"
#include "registry/HiveFolder.h"
#include "registry/RegistryFileWriter.h"
#include "registry/RegistryPath.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
using Posix::FileDescriptor;

constexpr const char* LockSuffix = ".lock";
constexpr const char* NextSuffix = ".new";
constexpr const char* SkippedSuffix = ".skipped";

LSTATUS CodeOf(const std::system_error& error) noexcept
{
    const int code = error.code().value();
    if (code == EBADMSG)
        return ERROR_BADDB;
    return code == EACCES || code == EPERM || code == EROFS ? ERROR_ACCESS_DENIED : ERROR_REGISTRY_IO_FAILED;
}

FileVersion VersionOf(const struct stat& status) noexcept
{
    return {status.st_dev, status.st_ino, status.st_size, {status.st_mtim.tv_sec, status.st_mtim.tv_nsec}};
}

/// Follows no link if it has a folder. That of a missing file if there is none.
FileVersion VersionAt(const std::string& path, int folder = AT_FDCWD)
{
    struct stat status;
    const int flags = folder == AT_FDCWD ? 0 : AT_SYMLINK_NOFOLLOW;
    if (::fstatat(folder, path.c_str(), &status, flags) == 0)
        return VersionOf(status);
    Require(errno == ENOENT || errno == ENOTDIR);
    return {};
}

/// None when it is missing.
Posix::RegularFile OpenHive(const std::string& path, int flags = 0, int folder = AT_FDCWD)
{
    Posix::RegularFile file = Posix::OpenFile(path, flags, folder);
    Require(file || errno == ENOENT || errno == ENOTDIR);
    return file;
}

std::int64_t Tick() noexcept
{
    struct timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec * std::int64_t{1'000'000'000} + now.tv_nsec;
}

std::string TimeNow()
{
    const std::time_t now = std::time(nullptr);
    struct tm parts;
    char text[sizeof "2000-01-01T00:00:00Z"];
    ::gmtime_r(&now, &parts);
    return {text, std::strftime(text, sizeof text, "%FT%TZ", &parts)};
}

/// Sets the time of a file after that of its version before, whatever the clock says. @return its version
FileVersion MakeLater(const FileDescriptor& file, const FileVersion& before)
{
    const auto [seconds, nanoseconds] = before.time;
    const bool isEndOfSecond = nanoseconds == 999'999'999;
    const timespec next = {seconds + isEndOfSecond, isEndOfSecond ? 0 : nanoseconds + 1};
    const timespec later = {seconds + 2, 0}; // some file systems store whole seconds only, or even ones
    FileVersion version = VersionOf(StatusOf(file));
    for (const timespec& time : {next, later})
    {
        if (version.time > before.time)
            return version;
        const timespec times[] = {time, time};
        Require(::futimens(file.get(), times) == 0);
        version = VersionOf(StatusOf(file));
    }
    if (version.time <= before.time)
        Throw(EIO);
    return version;
}
} // namespace

Hive::Hive(HKEY root, std::string path) : m_rootKey{root}, m_path{std::move(path)} {}

LSTATUS Hive::Refresh()
try
{
    if (m_path.empty())
        return ERROR_SUCCESS;
    m_tick = Tick(); // before the file is looked at
    if (!m_isLoaded || VersionAt(m_path) != m_version)
        Load(OpenHive(m_path));
    return ERROR_SUCCESS;
}
catch (const std::system_error& error)
{
    m_isLoaded = false;
    return CodeOf(error);
}

LSTATUS Hive::RefreshOncePerTick()
{
    return m_isLoaded && m_tick == Tick() ? ERROR_SUCCESS : Refresh();
}

const Key* Hive::Find(const std::string& path)
{
    if (!m_found || path != m_foundPath)
    {
        m_foundPath = path;
        m_found = m_root.Find(path);
    }
    return m_found;
}

LSTATUS Hive::CheckWritable() const
try
{
    if (m_path.empty())
        return ERROR_ACCESS_DENIED;
    Registry::CheckWritable(FindPlace(m_path));
    return ERROR_SUCCESS;
}
catch (const std::system_error& error)
{
    return CodeOf(error);
}

LSTATUS Hive::Change(const std::function<LSTATUS(Key&)>& edit)
try
{
    LSTATUS status = CheckWritable();
    if (status != ERROR_SUCCESS)
        return status;
    const auto [folder, name] = FindPlace(m_path, IsPrivate() ? 0700U : 0755U);
    const FileLock lock{folder, name + LockSuffix};
    Load(OpenHive(name, O_NOFOLLOW, folder.get()));
    m_isLoaded = false; // whatever fails from now on
    m_found = nullptr;
    status = edit(m_root);
    if (status == ERROR_SUCCESS)
        Commit(folder, name);
    return status;
}
catch (const std::system_error& error)
{
    return CodeOf(error);
}

LSTATUS Hive::Sync()
try
{
    if (!m_isSynced)
        SyncNames(FindPlace(m_path).folder);
    m_isSynced = true;
    return ERROR_SUCCESS;
}
catch (const std::system_error& error)
{
    return CodeOf(error);
}

void Hive::Load(const Posix::RegularFile& file)
{
    // Older than the text: what is written in between is another version then, and is read by the next call.
    const FileVersion version = VersionOf(file.status);
    if (m_isLoaded && version == m_version)
        return;
    m_isLoaded = m_isSynced = false;
    m_found = nullptr;
    m_root.Clear();
    m_content = {};
    m_version = version;
    m_mode = file.status.st_mode & 0777;
    m_group = file.status.st_gid;
    const std::optional<std::string> text = file ? Posix::ReadAll(file) : "";
    Require(text.has_value());
    if (text->find_first_not_of(" \t\r\n") != std::string::npos)
    {
        m_content = ReadRegistryFile(*text, m_rootKey, m_root);
        if (!m_content.isRegistryFile)
            Throw(EBADMSG);
    }
    m_isLoaded = true;
}

void Hive::Commit(const FileDescriptor& folder, const std::string& name)
{
    const bool isNew = m_version == FileVersion{};
    const mode_t mode = IsPrivate() ? 0600 : isNew ? 0644 : m_mode;
    if (!m_content.skipped.empty())
        AppendToFile(folder, name + SkippedSuffix,
                     "; " + TimeNow() + ": skipped when " + name + " was written\n" + m_content.skipped, mode);

    if (isNew) // else a writer before has done it
        SyncParents(folder);
    const std::string nextName = name + NextSuffix;
    Require(::unlinkat(folder.get(), nextName.c_str(), 0) == 0 || errno == ENOENT); // left by a killed process
    Posix::NextVersion next{folder, nextName, 0600};
    Require(next &&
            Posix::WriteAll(next.File(), WriteRegistryFile(m_root, RootName(m_rootKey), RegistryFileForm::Hive)));
    // If the group cannot be kept, the mode is meant for another one.
    const bool isKept = isNew || ::fchown(next.File().get(), static_cast<uid_t>(-1), m_group) == 0;
    Require(::fchmod(next.File().get(), isKept ? mode : mode & ~mode_t{070}) == 0);
    const FileVersion version = MakeLater(next.File(), m_version);
    if (VersionAt(name, folder.get()) != m_version)
        Throw(EBUSY); // by a program that does not know of the lock
    Require(next.Replace(name));
    SyncNames(folder);
    m_isLoaded = m_isSynced = true;
    m_version = version;
    m_mode = mode;
    m_content = {};
}
} // namespace Quenlor::StandIn::Registry
