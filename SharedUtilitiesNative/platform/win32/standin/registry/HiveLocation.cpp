#include "registry/HiveLocation.h"

#include <cstdlib>

namespace Quenlor::StandIn::Registry
{
namespace
{
/// The variable's value if it is an absolute path; empty otherwise.
std::string_view Folder(const char* variable) noexcept
{
    const char* const value = ::secure_getenv(variable);
    return value && value[0] == '/' ? std::string_view{value} : std::string_view{};
}
} // namespace

bool HiveLocation::Is(std::string_view path) const noexcept
{
    return path.size() == base.size() + folder.size() + file.size() && path.starts_with(base) && path.ends_with(file) &&
           path.substr(base.size()).starts_with(folder);
}

std::string HiveLocation::Path() const
{
    return std::string{base}.append(folder).append(file);
}

HiveLocation LocateHive(HKEY root) noexcept
{
    const std::string_view file = root == HKEY_LOCAL_MACHINE ? "/HKEY_LOCAL_MACHINE.reg" : "/HKEY_CURRENT_USER.reg";
    if (const std::string_view both = Folder("QUENLOR_REGISTRY_DIR"); !both.empty())
        return {both, "", file};
    if (root == HKEY_LOCAL_MACHINE)
        return {"/var/lib", "/quenlor/registry", file};
    if (const std::string_view config = Folder("XDG_CONFIG_HOME"); !config.empty())
        return {config, "/quenlor/registry", file};
    if (const std::string_view home = Folder("HOME"); !home.empty())
        return {home, "/.config/quenlor/registry", file};
    return {};
}
} // namespace Quenlor::StandIn::Registry
