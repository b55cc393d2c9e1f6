#pragma once

#include <cerrno>

namespace Quenlor::Posix
{
/// Makes a call again as long as a signal interrupts it.
template<typename Call>
auto RetryInterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}
} // namespace Quenlor::Posix
