#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>
#include <utility>

#include "posix/FileDescriptor.h"

namespace Quenlor::Posix
{
// Functions that return false leave the reason in errno.

bool WriteAll(const FileDescriptor& file, std::string_view text) noexcept;

/// Returns when the data of a file, or the names in a folder, are on disk.
bool Sync(const FileDescriptor& file) noexcept;

/// 16 characters that no other name has by chance.
std::string RandomName();

/// The next version of a file. It is written in the folder of that file under another name, or without one, and takes
/// its place in one step: a reader sees the old version or the new one, whole. At the end of its scope it is gone
/// unless it has taken its place.
class NextVersion final
{
public:
    /// Without a name: gone as well when the process is killed. It can take a free place only, and not every file
    /// system knows such files.
    explicit NextVersion(const FileDescriptor& folder);
    /// Under a name, which must be free. It has this mode, reduced by the umask, from the first byte on.
    NextVersion(const FileDescriptor& folder, std::string name, mode_t mode);
    NextVersion(NextVersion&& other) noexcept
        : m_folder{other.m_folder}, m_name{std::exchange(other.m_name, {})}, m_file{std::move(other.m_file)}
    {
    }
    ~NextVersion();

    explicit operator bool() const noexcept { return static_cast<bool>(m_file); } ///< False: the reason is in errno.
    const FileDescriptor& File() const noexcept { return m_file; }

    // Both return when the data are on disk; Sync(folder) does the same for the new name.

    bool Replace(const std::string& file);  ///< Whatever has that name in the folder.
    bool TakeFree(const std::string& file); ///< False with EEXIST when something has that name.

private:
    const FileDescriptor* m_folder;
    std::string m_name; // empty when there is nothing to remove
    FileDescriptor m_file;
};
} // namespace Quenlor::Posix
