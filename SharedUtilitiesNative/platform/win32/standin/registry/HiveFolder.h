#pragma once

#include <string>
#include <string_view>
#include <sys/stat.h>

#include "posix/FileDescriptor.h"

// The folder of a hive, for writing. Who owns it writes it, and everything is done by open descriptors, so that nothing
// that is put in the place of a folder or a file meanwhile is written to. Functions throw std::system_error.

namespace Quenlor::StandIn::Registry
{
[[noreturn]] void ThrowSystemError(); ///< Throws what errno says.

/// A file in a folder that stays open.
struct HivePlace
{
    Posix::FileDescriptor folder; ///< For the functions whose names end in "at", not for reading.
    std::string name;             ///< Of the hive; empty when the folder is the nearest one that exists.
};

/// Where a path leads to: links are followed, the last one too.
/// EACCES when root would follow a link or enter a folder that is somebody else's.
HivePlace FindPlace(const std::string& path);

/// The same, and makes the missing folders with this mode, whatever the umask. EACCES when the folder of the hive is
/// somebody else's.
HivePlace MakePlace(const std::string& path, mode_t mode);

/// EACCES, EPERM or EROFS when this process may not write the hive. A hive without write permission is protected,
/// although it could be replaced.
void CheckWritable(const HivePlace& place);

/// The folder, for Posix::Sync.
Posix::FileDescriptor OpenForSync(const Posix::FileDescriptor& folder);

/// Returns when the name of the folder and those of its parents are on disk, whichever process has made them.
void SyncParents(const Posix::FileDescriptor& folder);

/// Appends to a file of this account, which is made if missing, and returns when the text is on disk.
void AppendToFile(const Posix::FileDescriptor& folder, const std::string& name, std::string_view text, mode_t mode);

/// Holds a lock against all other processes; waits until it is free.
class FileLock final
{
public:
    FileLock(const Posix::FileDescriptor& folder, const std::string& name);
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock();

private:
    Posix::FileDescriptor m_file;
};
} // namespace Quenlor::StandIn::Registry
