#pragma once

#include <functional>
#include <mutex>
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

    Hive& Of(HKEY root) noexcept { return root == HKEY_LOCAL_MACHINE ? machine : user; }

    std::mutex mutex;
    Hive machine;
    Hive user;
};

// The hives as tools see them. `root` is HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER, any other handle gives
// ERROR_INVALID_HANDLE. Any thread may call. The functions that are passed in run under the lock of the registry and
// must not call it.

/// Hands the newest state of a hive to `read`.
LSTATUS ReadHive(HKEY root, const std::function<void(const Key&)>& read);

/// Changes a hive in one step: either everything that `edit` did is on disk when this returns 0, or nothing was
/// changed. Nothing is written when `edit` returns another code than 0; that code is returned then.
LSTATUS ChangeHive(HKEY root, const std::function<LSTATUS(Key&)>& edit);

/// The file of a hive, whether it exists or not; empty when there is no place for it.
std::string HivePath(HKEY root);

/// The lines of the hive that were skipped because they are malformed, the first ones if they are many. All are saved
/// beside the hive, in a file with `.skipped` added to its name, before the hive is written.
LSTATUS HiveProblems(HKEY root, std::vector<RegistryFileProblem>& problems);
} // namespace Quenlor::StandIn::Registry
