#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <Platform/Win32.h>

#include "registry/ChangeCounter.h"
#include "registry/HiveFile.h"
#include "registry/RegistryFileReader.h"
#include "registry/RegistryTree.h"

namespace Quenlor::StandIn::Registry
{
/// One hive: a registry file, and the keys that were last read from it or written to it.
///
/// A missing file is an empty hive. Codes are 0, ERROR_ACCESS_DENIED when the system refuses the right, and
/// ERROR_REGISTRY_IO_FAILED when the file cannot be read or written for another reason; the hive is empty then, and the
/// file is left alone. Not thread-safe. Several processes may work on one file.
class Hive final
{
public:
    /// `root` is HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER. The file of the latter is for its owner alone. An empty path
    /// is a hive without a place: it is empty and cannot be written.
    Hive(HKEY root, std::string path);
    Hive(const Hive&) = delete;
    Hive& operator=(const Hive&) = delete;

    const std::string& Path() const noexcept { return m_path; }

    /// Makes the keys those of the file: one stat call if nothing has changed. Sees every change.
    LSTATUS Refresh();
    /// The same without a system call if nothing has changed. Sees what programs write, but what a person's editor
    /// writes only with the next Refresh.
    LSTATUS RefreshIfAnnounced();

    const Key& Root() const noexcept { return m_root; }
    /// Root().Find, quicker when asked for the same path again: programs mostly read the settings of one key.
    const Key* Find(std::string_view path);
    /// Another number after each change of the keys; pointers to keys are good for one number.
    std::uint64_t Generation() const noexcept { return m_generation; }
    const std::vector<RegistryFileProblem>& Problems() const noexcept { return m_problems; }

    LSTATUS CheckWritable() const; ///< 0 if this process has the right to change it.

    /// Changes the newest state of the hive: either all that `edit` does is on disk when this returns 0, or nothing is
    /// changed. Nothing is written if `edit` returns another code than 0; that code is returned then. Only if the disk
    /// fails in the very last step, the change is there and ERROR_REGISTRY_IO_FAILED says that it may not last.
    LSTATUS Change(const std::function<LSTATUS(Key&)>& edit);

private:
    void Load();
    void Forget() noexcept;
    void Commit();
    void SaveSkippedText() const;
    bool IsPrivate() const noexcept { return m_rootKey == HKEY_CURRENT_USER; }
    mode_t FileMode() const noexcept;

    HKEY m_rootKey;
    std::string m_path;
    std::string m_file; // where the path leads to; the other files lie beside it
    Key m_root;
    std::vector<RegistryFileProblem> m_problems;
    std::uint64_t m_generation = 1;

    std::string m_lastPath; // of Find, and its answer
    const Key* m_lastKey = nullptr;
    std::uint64_t m_lastGeneration = 0;

    bool m_isLoaded = false;
    FileVersion m_version; // the one that the keys are from
    ChangeCounter m_counter;
    std::uint64_t m_counted = 0; // what the counter showed before that version was looked at
};
} // namespace Quenlor::StandIn::Registry
