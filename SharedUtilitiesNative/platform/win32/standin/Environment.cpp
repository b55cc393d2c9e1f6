#include <Platform/Win32.h>

#include <cerrno>
#include <cstring>

#include "posix/Environment.h"

using namespace Quenlor;

errno_t getenv_s(std::size_t* required, char* buffer, std::size_t size, const char* name)
{
    if (!required || !name || (!buffer && size != 0))
        return EINVAL;
    const std::optional<std::string> value = Posix::EnvironmentVariable(name);
    *required = value ? value->size() + 1 : 0;
    if (buffer && size != 0)
        buffer[0] = '\0';
    if (!value || size == 0)
        return 0;
    if (*required > size)
        return ERANGE;
    std::memcpy(buffer, value->c_str(), *required);
    return 0;
}

errno_t _putenv_s(const char* name, const char* value)
{
    if (!name || !value)
        return EINVAL;
    return Posix::SetEnvironmentVariable(name, *value == '\0' ? nullptr : value);
}
