#pragma once

#include <string>
#include <string_view>

#include <sys/stat.h>

#include "posix/FileDescriptor.h"

// What a hive needs of the file system. Everything here throws std::system_error when a call to the system fails.

namespace Quenlor::StandIn::Registry
{
/// Throws what errno says.
[[noreturn]] void ThrowSystemError();

/// What tells one version of a file from every other one. Replacement makes the time of modification rise with every
/// version, so that this holds within a tick of the clock too.
class FileVersion final
{
public:
    FileVersion() noexcept = default; ///< A file that does not exist.
    explicit FileVersion(const struct stat& status) noexcept : m_status{status}, m_exists{true} {}
    static FileVersion Of(const std::string& path);

    bool Exists() const noexcept { return m_exists; }
    const struct stat& Status() const noexcept { return m_status; } ///< Only if it exists.
    bool operator==(const FileVersion& other) const noexcept;

private:
    struct stat m_status = {};
    bool m_exists = false;
};

/// The file that a path leads to: its last component is followed as long as it is a symbolic link.
std::string FollowLinks(std::string path);

/// The whole file and the version that was read; "" when it does not exist.
std::string ReadFile(const std::string& path, FileVersion& version);

/// Makes the folder with its missing parents, whatever the umask says, and returns when they are on disk.
void MakeFolder(const std::string& path, mode_t mode);
std::string FolderOf(const std::string& path);

/// Appends to a file and returns when the text is on disk.
void AppendToFile(const std::string& path, std::string_view text, mode_t mode);

/// Throws if this process may not replace the file: it must be allowed to write its folder (the nearest one that
/// exists) and the file itself. A file without write permission counts as protected although it could be replaced.
void CheckReplaceable(const std::string& path);

/// Holds a lock against all other processes; waits until it is free.
class FileLock final
{
public:
    explicit FileLock(const std::string& path);
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock();

private:
    Posix::FileDescriptor m_file;
};

/// The next version of a file, written beside it and put in its place in one step. It is removed if it never gets
/// there. Only one process at a time may prepare one, for its name is always the same; what a killed process left is
/// removed by the next.
class Replacement final
{
public:
    explicit Replacement(std::string path);
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    /// Returns when the text is on disk. The owner of the old version is kept where the system allows it.
    void Write(std::string_view text, mode_t mode, const FileVersion& old);
    void Publish();
    void Sync() const; ///< Returns when the new name is on disk.
    const FileVersion& Version() const noexcept { return m_version; }

private:
    void MakeLaterThan(const FileVersion& old);

    std::string m_path;
    std::string m_temporary;
    Posix::FileDescriptor m_folder;
    Posix::FileDescriptor m_file;
    FileVersion m_version;
    bool m_isPublished = false;
};
} // namespace Quenlor::StandIn::Registry
