#pragma once

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

// For tests with several processes.

/// How often something is repeated, unless a variable says otherwise.
inline int CountFrom(const char* variable, int usual)
{
    const char* const text = std::getenv(variable);
    return text ? std::atoi(text) : usual;
}

/// Runs `body` in a process of its own, which ends with what it returns.
inline pid_t Start(const std::function<int()>& body)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit([&]() noexcept { return body(); }()); // an exception must not go on with the parent's tests
    return child;
}

/// Waits for the end of a process. @return what it ended with; -1 when it was killed
inline int ExitCode(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR)
    {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
