#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>

#include "posix/FileDescriptor.h"

// The folder of a hive, for writing, which only its owner may do. Everything is done by open descriptors, so
// that nothing is written to what is put in the place of a folder or a file meanwhile. Functions throw
// std::system_error.

namespace Quenlor::StandIn::Registry
{
[[noreturn]] void Throw(int error);
void Require(bool isDone); ///< Throws what errno says unless it is done.

struct stat StatusOf(const Posix::FileDescriptor& file);

/// A file in a folder that stays open.
struct HivePlace
{
    Posix::FileDescriptor folder; ///< For the functions whose names end in "at", not for reading.
    std::string name;             ///< Of the hive; empty when the folder is the nearest one that exists.
};

/// Where a path leads to: links are followed, including the last one. EACCES when root would follow a link or enter a
/// folder of another account.
/// @param newFolders the mode of missing folders, which are made then, whatever the umask; EACCES when the folder of
///                   the hive belongs to another account
HivePlace FindPlace(const std::string& path, std::optional<mode_t> newFolders = {});

/// EACCES, EPERM or EROFS when this process may not write the hive. A hive without write permission is protected,
/// although it could be replaced.
void CheckWritable(const HivePlace& place);

/// Returns when the names in the folder are on disk.
void SyncNames(const Posix::FileDescriptor& folder);

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
