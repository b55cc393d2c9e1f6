#pragma once

#include <cstddef>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>

#include "posix/FileDescriptor.h"

namespace Quenlor::Posix
{
/// A regular file, and what the system says of it when it is opened.
struct RegularFile : FileDescriptor
{
    struct stat status = {};
};

/// Opens a file for reading without ever waiting: a pipe or a device is refused, as a folder is.
/// @param path of this system; relative to the folder that is open as `folder`
/// @param flags in addition, O_NOFOLLOW for instance
/// @return none, and the reason in errno, when it cannot be opened
RegularFile OpenFile(const std::string& path, int flags = 0, int folder = AT_FDCWD);

constexpr std::size_t LargestFile = std::size_t{256} << 20; ///< More than any file that the library reads whole needs.

/// The rest of an open file. None, and the reason in errno, when it cannot be read or is longer than LargestFile.
std::optional<std::string> ReadAll(const RegularFile& file);
} // namespace Quenlor::Posix
