#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

#include "posix/FileDescriptor.h"

namespace Benchmarks
{
/// Where everything lies that is generated: on a disk, so that a sync costs what it costs, and about as deep as the
/// files of a user.
const std::filesystem::path& Workplace();

/// Reads the first `length` bytes of a file as the bare system does it, and hands the pieces on as they come.
template<class Visitor>
void ReadPieces(const std::string& path, std::size_t length, Visitor visit)
{
    static std::array<char, std::size_t{64} * 1024> buffer;
    const Quenlor::Posix::FileDescriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    while (length != 0)
    {
        const ssize_t count = ::read(file.get(), buffer.data(), std::min(length, buffer.size()));
        if (count <= 0)
            return;
        length -= static_cast<std::size_t>(count);
        visit(std::string_view{buffer.data(), static_cast<std::size_t>(count)});
    }
}
} // namespace Benchmarks
