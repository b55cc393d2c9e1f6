#include "registry/Hives.h"

#include <mutex>

#include "registry/RegistryState.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
/// Runs `action` with the hive of `root` while no other thread uses the registry.
template<typename Action>
LSTATUS WithHive(HKEY root, Action action)
{
    if (root != HKEY_LOCAL_MACHINE && root != HKEY_CURRENT_USER)
        return ERROR_INVALID_HANDLE;
    RegistryState& state = RegistryState::Instance();
    const std::lock_guard lock{state.Mutex()};
    return action(state, *state.HiveOf(root));
}

template<typename Action>
LSTATUS WithFreshHive(HKEY root, Action action)
{
    return WithHive(root,
                    [&](RegistryState&, Hive& hive)
                    {
        const LSTATUS status = hive.Refresh();
        if (status == ERROR_SUCCESS)
            action(hive);
        return status;
    });
}
} // namespace

LSTATUS ReadHive(HKEY root, const std::function<void(const Key&)>& read)
{
    return WithFreshHive(root, [&](const Hive& hive) { read(hive.Root()); });
}

LSTATUS ChangeHive(HKEY root, const std::function<LSTATUS(Key&)>& edit)
{
    return WithHive(root, [&](RegistryState& state, Hive& hive) { return state.Change(hive, edit); });
}

std::string HivePath(HKEY root)
{
    std::string path;
    WithHive(root,
             [&](RegistryState&, const Hive& hive)
             {
        path = hive.Path();
        return ERROR_SUCCESS;
    });
    return path;
}

LSTATUS HiveProblems(HKEY root, std::vector<RegistryFileProblem>& problems)
{
    return WithFreshHive(root, [&](const Hive& hive) { problems = hive.Problems(); });
}
} // namespace Quenlor::StandIn::Registry
