#include "registry/Hives.h"

#include "posix/Environment.h"

namespace Quenlor::StandIn::Registry
{
void LocateHives();

namespace
{
/// The variable's value if it is an absolute path, so that no place depends on the current folder; empty otherwise.
std::string Folder(const char* variable)
{
    const std::string value = Posix::EnvironmentVariable(variable).value_or("");
    return value.starts_with('/') ? value : "";
}

/// Empty when there is no place for the hive.
std::string FolderOf(HKEY root)
{
    if (const std::string both = Folder("QUENLOR_REGISTRY_DIR"); !both.empty())
        return both;
    if (root == HKEY_LOCAL_MACHINE)
        return "/var/lib/quenlor/registry";
    if (const std::string config = Folder("XDG_CONFIG_HOME"); !config.empty())
        return config + "/quenlor/registry";
    const std::string home = Folder("HOME");
    return home.empty() ? home : home + "/.config/quenlor/registry";
}

Hive Locate(HKEY root)
{
    const std::string folder = FolderOf(root);
    const char* const file = root == HKEY_LOCAL_MACHINE ? "/HKEY_LOCAL_MACHINE.reg" : "/HKEY_CURRENT_USER.reg";
    return {root, folder.empty() ? folder : folder + file};
}

bool HasHive(HKEY root) noexcept
{
    return root == HKEY_LOCAL_MACHINE || root == HKEY_CURRENT_USER;
}
} // namespace

Hives& Hives::Instance()
{
    // Never destroyed: other static objects may close their keys when they are.
    static Hives& instance = *new Hives{{}, Locate(HKEY_LOCAL_MACHINE), Locate(HKEY_CURRENT_USER)};
    return instance;
}

/// Decides again, by the environment of now, where the hives are. For tests only, which need more than one place in a
/// process; no header declares it.
void LocateHives()
{
    Hives& hives = Hives::Instance();
    const std::lock_guard lock{hives.mutex};
    hives.machine = Locate(HKEY_LOCAL_MACHINE);
    hives.user = Locate(HKEY_CURRENT_USER);
}

LSTATUS ReadHive(HKEY root, const std::function<void(const Key&)>& read)
{
    if (!HasHive(root))
        return ERROR_INVALID_HANDLE;
    Hives& hives = Hives::Instance();
    const std::lock_guard lock{hives.mutex};
    const LSTATUS status = hives.Of(root).Refresh();
    if (status == ERROR_SUCCESS)
        read(hives.Of(root).Root());
    return status;
}

LSTATUS ChangeHive(HKEY root, const std::function<LSTATUS(Key&)>& edit)
{
    if (!HasHive(root))
        return ERROR_INVALID_HANDLE;
    Hives& hives = Hives::Instance();
    const std::lock_guard lock{hives.mutex};
    return hives.Of(root).Change(edit);
}

std::string HivePath(HKEY root)
{
    return HasHive(root) ? Hives::Instance().Of(root).Path() : "";
}

LSTATUS HiveProblems(HKEY root, std::vector<RegistryFileProblem>& problems)
{
    return ReadHive(root, [&](const Key&) { problems = Hives::Instance().Of(root).Problems(); });
}
} // namespace Quenlor::StandIn::Registry
