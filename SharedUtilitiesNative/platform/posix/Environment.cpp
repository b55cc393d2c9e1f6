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

int SetEnvironmentVariable(const char* name, const char* value)
{
    const std::lock_guard lock{EnvironmentMutex};
    const int result = value ? ::setenv(name, value, 1) : ::unsetenv(name);
    return result == 0 ? 0 : errno;
}
} // namespace Quenlor::Posix
