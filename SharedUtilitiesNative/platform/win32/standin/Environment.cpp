#include <Platform/Win32.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

errno_t getenv_s(std::size_t* required, char* buffer, std::size_t size, const char* name)
{
    if (!required || !name || (!buffer && size != 0))
        return EINVAL;
    const char* const value = ::secure_getenv(name); // variables move the root and folders: not in set-user-ID programs
    *required = value ? std::strlen(value) + 1 : 0;
    if (buffer && size != 0)
        buffer[0] = '\0';
    if (!value || size == 0)
        return 0;
    if (*required > size)
        return ERANGE;
    std::memcpy(buffer, value, *required);
    return 0;
}

errno_t _putenv_s(const char* name, const char* value)
{
    if (!name || !value)
        return EINVAL;
    const int result = *value == '\0' ? ::unsetenv(name) : ::setenv(name, value, 1);
    return result == 0 ? 0 : errno;
}
