#include "posix/Executable.h"

#include <array>
#include <climits>
#include <string_view>
#include <unistd.h>

namespace Quenlor::Posix
{
std::string ExecutablePath(const std::string& link)
{
    constexpr std::string_view deleted =
        " (deleted)"; // what the system appends when a package upgrade replaced the file
    std::array<char, PATH_MAX> buffer;
    const ssize_t length = ::readlink(link.c_str(), buffer.data(), buffer.size());
    std::string path{buffer.data(), length < 0 ? 0 : static_cast<std::size_t>(length)};
    if (path.ends_with(deleted) && ::access(path.c_str(), F_OK) != 0)
        path.erase(path.length() - deleted.length());
    return path;
}
} // namespace Quenlor::Posix
