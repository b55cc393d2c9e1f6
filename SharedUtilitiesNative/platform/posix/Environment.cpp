#include "posix/Environment.h"

#include <cerrno>
#include <cstdlib>

namespace Quenlor::Posix
{
std::optional<std::string> EnvironmentVariable(const char* name)
{
    const std::lock_guard lock{EnvironmentMutex};
    const char* const value = ::secure_getenv(name);
    return value ? std::optional<std::string>{value} : std::nullopt;
}

std::string FirstOf(std::initializer_list<const char*> variables)
{
    for (const char* const variable : variables)
    {
        const std::optional<std::string> value = EnvironmentVariable(variable);
        if (value && !value->empty())
            return *value;
    }
    return {};
}

int SetEnvironmentVariable(const char* name, const char* value)
{
    const std::lock_guard lock{EnvironmentMutex};
    const int result = value ? ::setenv(name, value, 1) : ::unsetenv(name);
    return result == 0 ? 0 : errno;
}
} // namespace Quenlor::Posix
