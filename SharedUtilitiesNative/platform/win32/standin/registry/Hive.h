#pragma once

#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

#include <Platform/Win32.h>

#include "registry/Key.h"
#include "registry/RegistryFileReader.h"

namespace Quenlor::Posix
{
class FileDescriptor;
struct RegularFile;
} // namespace Quenlor::Posix

namespace Quenlor::StandIn::Registry
{
/// Differs for any two versions of a file; all 0 for a missing file. Each version of a hive is written with a later
/// time than the one before, so that this holds even within a tick of the clock.
struct FileVersion
{
    dev_t device = 0;
    ino_t file = 0;
    off_t size = 0;
    std::pair<time_t, long> time; ///< Seconds and nanoseconds.

    friend bool operator==(const FileVersion&, const FileVersion&) = default;
};

/// One hive: a registry file, and the keys that were last read from it or written to it.
///
/// A missing file is an empty hive. Codes are 0, ERROR_ACCESS_DENIED when the right is refused, ERROR_BADDB when the
/// file is not a registry file, and ERROR_REGISTRY_IO_FAILED when it cannot be read or written for another reason; the
/// file stays as it is then. Not thread-safe. Several processes may work on one file.
class Hive final
{
public:
    /// `root` is HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER. The file of the latter is readable only by its owner. An
    /// empty path is a hive without a place: it is empty and cannot be written.
    Hive(HKEY root, std::string path);

    const std::string& Path() const noexcept { return m_path; }

    LSTATUS Refresh();            ///< Makes the keys those of the file: one stat call if nothing has changed.
    LSTATUS RefreshOncePerTick(); ///< The same, unless it was done in the same tick of the coarse clock (1 to 10 ms).

    // Of the last Refresh or Change, if it returned 0.
    const Key& Root() const noexcept { return m_root; }
    const Key* Find(const std::string& path); ///< As Key::Find; at once for the path of the time before.
    const std::vector<RegistryFileProblem>& Problems() const noexcept { return m_content.problems; }

    LSTATUS CheckWritable() const; ///< 0 if this process has the right to change it.

    /// Changes the newest state of the hive: either all that `edit` does is on disk when this returns 0, or nothing is
    /// changed. Nothing is written if `edit` returns another code than 0; that code is returned then. Only if the disk
    /// fails in the very last step, the change is there and ERROR_REGISTRY_IO_FAILED says that it may not last.
    LSTATUS Change(const std::function<LSTATUS(Key&)>& edit);

    /// Returns when the keys that were read are on disk: their writer may not have got that far, or has been killed.
    LSTATUS Sync();

private:
    void Load(const Posix::RegularFile& file);
    void Commit(const Posix::FileDescriptor& folder, const std::string& name);
    bool IsPrivate() const noexcept { return m_rootKey == HKEY_CURRENT_USER; }

    HKEY m_rootKey;
    std::string m_path;

    Key m_root;
    std::string m_foundPath;      // programs read several settings of one key
    const Key* m_found = nullptr; // null when its key may be gone
    RegistryFileResult m_content; // what could not be read of it
    FileVersion m_version;        // the one that the keys are from
    mode_t m_mode = 0;            // of that version
    gid_t m_group = 0;
    bool m_isLoaded = false; // false while the keys are not those of any version
    bool m_isSynced = false; // that version is known to be on disk
    std::int64_t m_tick = 0; // when the file was last looked at
};
} // namespace Quenlor::StandIn::Registry
