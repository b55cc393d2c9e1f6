#include "registry/RegistryState.h"

#include "registry/HiveLocation.h"

namespace Quenlor::StandIn::Registry
{
RegistryState& RegistryState::Instance()
{
    // Never destroyed: other static objects may close their keys when they are.
    static RegistryState& instance = *new RegistryState;
    return instance;
}

const std::shared_ptr<Hive>& RegistryState::HiveOf(HKEY root)
{
    std::shared_ptr<Hive>& hive = root == HKEY_LOCAL_MACHINE ? m_machine : m_user;
    const HiveLocation location = LocateHive(root);
    if (!hive || !location.Is(hive->Path()))
        hive = std::make_shared<Hive>(root, location.Path());
    return hive;
}

LSTATUS RegistryState::Change(Hive& hive, const std::function<LSTATUS(Key&)>& edit)
{
    const LSTATUS status = hive.Change(edit);
    if (status == ERROR_SUCCESS)
        m_handles.MarkDeleted(hive);
    return status;
}
} // namespace Quenlor::StandIn::Registry
