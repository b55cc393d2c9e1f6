#include "registry/Hives.h"

#include "posix/Environment.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
/// The variable's value if it is an absolute path, so that no place depends on the current folder; empty otherwise.
std::string Folder(const char* variable)
{
    const std::string value = Posix::EnvironmentVariable(variable).value_or("");
    return value.starts_with('/') ? value : "";
}

std::array<Hive, 2> LocateBoth()
{
    const std::string both = Folder("QUENLOR_REGISTRY_DIR"), home = Folder("HOME");
    std::string config = Folder("XDG_CONFIG_HOME");
    if (config.empty() && !home.empty())
        config = home + "/.config";
    // Empty when there is no place for the hive.
    const auto in = [&](const std::string& folder, const char* file)
    {
        const std::string place = both.empty() && !folder.empty() ? folder + "/quenlor/registry" : both;
        return place.empty() ? place : place + file;
    };
    return {Hive{HKEY_CURRENT_USER, in(config, "/HKEY_CURRENT_USER.reg")},
            Hive{HKEY_LOCAL_MACHINE, in("/var/lib", "/HKEY_LOCAL_MACHINE.reg")}};
}
} // namespace

Hives& Hives::Instance()
{
    // Never destroyed: other static objects may close their keys when they are.
    static Hives& instance = *new Hives{{}, LocateBoth()};
    return instance;
}

std::span<Hive> Hives::Of(HKEY root) noexcept
{
    if (root == HKEY_CLASSES_ROOT)
        return both;
    return std::span{both}.subspan(root == HKEY_CURRENT_USER ? 0 : 1, 1);
}

void LocateHives()
{
    Hives& hives = Hives::Instance();
    const std::lock_guard lock{hives.mutex};
    hives.both = LocateBoth();
}

LSTATUS ReadHive(HKEY root, const std::function<void(const Key&)>& read)
{
    Hives& hives = Hives::Instance();
    const std::lock_guard lock{hives.mutex};
    Hive& hive = hives.Of(root).front();
    const LSTATUS status = hive.Refresh();
    if (status == ERROR_SUCCESS)
        read(hive.Root());
    return status;
}

LSTATUS ChangeHive(HKEY root, const std::function<LSTATUS(Key&)>& edit)
{
    Hives& hives = Hives::Instance();
    const std::lock_guard lock{hives.mutex};
    return hives.Of(root).front().Change(edit);
}

std::string HivePath(HKEY root)
{
    return Hives::Instance().Of(root).front().Path();
}

LSTATUS HiveProblems(HKEY root, std::vector<RegistryFileProblem>& problems)
{
    return ReadHive(root, [&](const Key&) { problems = Hives::Instance().Of(root).front().Problems(); });
}
} // namespace Quenlor::StandIn::Registry
