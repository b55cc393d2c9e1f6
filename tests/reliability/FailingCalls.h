#pragma once

#include <string>
#include <vector>

// A library that takes the calls to the file system before the C library does: they are recorded, and can be made to
// fail. None waits for the disk, which makes an attack of a thousand steps a matter of seconds. It must be the first
// shared library of the program.

namespace FailingCalls
{
// What happens to a call, if not an error of errno.h.
inline constexpr int HalfTransfer = -1; ///< Reads and writes do half of what they are asked for.
inline constexpr int Killed = -2;       ///< The process ends as with SIGKILL instead.

struct Plan
{
    std::size_t first = 0;  ///< The first call that it happens to, counted from 1; 0 for none.
    bool isLasting = false; ///< It happens to all later ones as well.
    int fault = 0;
    std::string calls = {}; ///< That it can happen to; all if empty.

    bool CanHappenTo(const std::string& call) const { return calls.empty() || calls.find(call) != calls.npos; }
};

struct Call
{
    std::string name;
    bool isDone = false;
    int result = 0; ///< Of an opening: the descriptor.
    int number = 0; ///< The last one that it was given: the flags of an opening, the descriptor of others.
    std::vector<std::string> paths = {};
    std::size_t at = 0;
    std::string data = {}; ///< What has been written, and where.
};

void Begin(const Plan& plan);

/// @return the calls since Begin, in order
std::vector<Call> End();
} // namespace FailingCalls
