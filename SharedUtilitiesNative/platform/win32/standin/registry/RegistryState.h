#pragma once

#include <memory>
#include <mutex>

#include <Platform/Win32.h>

#include "registry/HandleTable.h"
#include "registry/Hive.h"

namespace Quenlor::StandIn::Registry
{
/// What the process knows of the registry. Whoever uses it holds the mutex.
class RegistryState final
{
public:
    static RegistryState& Instance();

    std::mutex& Mutex() noexcept { return m_mutex; }
    HandleTable& Handles() noexcept { return m_handles; }

    /// The hive of HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER, where the environment has it now.
    const std::shared_ptr<Hive>& HiveOf(HKEY root);

    /// Hive::Change, and marks the handles of the keys that were deleted.
    LSTATUS Change(Hive& hive, const std::function<LSTATUS(Key&)>& edit);

private:
    std::mutex m_mutex;
    HandleTable m_handles;
    std::shared_ptr<Hive> m_machine;
    std::shared_ptr<Hive> m_user;
};
} // namespace Quenlor::StandIn::Registry
