#pragma once

#include <cerrno>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

#include "reliability/Attacks.h"

// For attacks by several processes that share what the test has prepared.

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
