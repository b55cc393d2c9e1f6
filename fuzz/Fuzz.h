#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

// What the fuzz targets share: the entry point that each defines, and small helpers.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the program, which the fuzzer reports, when something does not hold that must.
inline void Check(bool holds, int line = __builtin_LINE())
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: line %d\n", line);
    std::abort();
}

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// Takes a line off the front of `text`, which ends in a line feed or with the text.
inline std::string TakeLine(std::string_view& text)
{
    const std::size_t end = text.find('\n');
    const std::string line{text.substr(0, end)};
    text.remove_prefix(end == std::string_view::npos ? text.length() : end + 1);
    return line;
}

/// The path of a file in memory.
inline std::string FileOf(std::string_view content)
{
    static const int file = ::memfd_create("input", MFD_CLOEXEC);
    const auto size = static_cast<ssize_t>(content.size());
    Check(::ftruncate(file, 0) == 0 && ::pwrite(file, content.data(), content.size(), 0) == size);
    return "/proc/self/fd/" + std::to_string(file);
}
