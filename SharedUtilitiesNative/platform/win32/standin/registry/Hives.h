#pragma once

#include <array>
#include <functional>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include <Platform/Win32.h>

#include "registry/Hive.h"

namespace Quenlor::StandIn::Registry
{
/// The two hives of this process; programs use the Reg* functions. The mutex is held while one is used.
struct Hives
{
    static Hives& Instance();

    /// Those that may have the keys below a root, in the order of look-up: HKEY_CLASSES_ROOT is in both.
    std::span<Hive> Of(HKEY root) noexcept;

    std::mutex mutex;
    std::array<Hive, 2> both; ///< The user's first.
};

/// Decides again, by the environment of now, where the hives are. Only for tests and benchmarks, which need more than
/// one place in a process.
void LocateHives();

// The hives as tools see them; `root` is HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER. Any thread may call. The functions
// that are passed in run under the lock of the registry and must not call it.

/// Hands the newest state of a hive to `read`.
LSTATUS ReadHive(HKEY root, const std::function<void(const Key&)>& read);

/// As Hive::Change.
LSTATUS ChangeHive(HKEY root, const std::function<LSTATUS(Key&)>& edit);

/// The file of a hive, whether it exists or not; empty when there is no place for it.
std::string HivePath(HKEY root);

/// The lines of the hive that were skipped because they are malformed, the first ones if they are many. All are saved
/// beside the hive, in a file with `.skipped` added to its name, before the hive is written.
LSTATUS HiveProblems(HKEY root, std::vector<RegistryFileProblem>& problems);
} // namespace Quenlor::StandIn::Registry
