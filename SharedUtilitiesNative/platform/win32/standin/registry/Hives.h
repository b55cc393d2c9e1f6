#pragma once

#include <functional>
#include <string>
#include <vector>

#include <Platform/Win32.h>

#include "registry/RegistryFileReader.h"
#include "registry/RegistryTree.h"

// The two hives as tools see them; programs use the Reg* functions. `root` is HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER,
// any other handle gives ERROR_INVALID_HANDLE. Any thread may call. The functions that are passed in run under the lock
// of the registry and must not call it.

namespace Quenlor::StandIn::Registry
{
/// Hands the newest state of a hive to `read`.
LSTATUS ReadHive(HKEY root, const std::function<void(const Key&)>& read);

/// Changes a hive in one step: either everything that `edit` did is on disk when this returns 0, or nothing was
/// changed. Nothing is written when `edit` returns another code than 0; that code is returned then.
LSTATUS ChangeHive(HKEY root, const std::function<LSTATUS(Key&)>& edit);

/// The file of a hive, whether it exists or not; empty when there is no place for it.
std::string HivePath(HKEY root);

/// The lines of the hive that were skipped because they are malformed. They are saved beside the hive, in a file with
/// `.skipped` added to its name, before the hive is written.
LSTATUS HiveProblems(HKEY root, std::vector<RegistryFileProblem>& problems);
} // namespace Quenlor::StandIn::Registry
