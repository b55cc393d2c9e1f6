#pragma once

#include <string>
#include <vector>

// A library that takes the calls to the file system before the C library does: they are counted, and can be made to
// fail. It must be the first shared library of the program.

namespace FailingCalls
{
// What happens to a call, if not an error of errno.h.
inline constexpr int HalfTransfer = -1; ///< Reads and writes do half of what they are asked for.
inline constexpr int Killed = -2;       ///< The process ends as with SIGKILL instead.

/// A call that has changed the file system, or made changes last.
struct Change
{
    std::string call;
    std::vector<std::string> paths = {};
    int file = -1; ///< The descriptor.
    int flags = 0; ///< Of an opening.
    std::size_t at = 0;
    std::string data = {};
};

struct Plan
{
    std::size_t first = 0;  ///< The first call that it happens to, counted from 1; 0 for none.
    bool isLasting = false; ///< It happens to all later ones as well.
    int fault = 0;
    bool hasUnnamedFiles = true;           ///< Whether the file system knows O_TMPFILE.
    std::vector<Change>* record = nullptr; ///< Gets the changes that succeed, in order.
};

/// From now on nothing waits for the disk, which makes an attack of a thousand steps a matter of seconds.
void Begin(const Plan& plan);

/// @return the calls since Begin, in order
std::vector<std::string> End();

/// EINTR can happen to calls that wait, half a transfer to those that transfer, and everything else to all.
bool CanHappen(int fault, const std::string& call);
} // namespace FailingCalls
