#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include <Quenlor/TextFile.h>

namespace Quenlor
{
constexpr std::int64_t LargestText = std::int64_t{256} << 20; ///< A file may claim to be longer than any memory.

/// @param size how long the text is as far as the system knows; any length is read
/// @param read puts at most `count` bytes at a place: read(place, count) returns how many, 0 or less at the end
template<class Read>
TextFile ReadToEnd(std::size_t size, Read read)
{
    size = std::max<std::size_t>(size, 4095) + 1; // one more, so that the end is found without growing
    TextFile file{std::make_unique_for_overwrite<char[]>(size)};
    for (auto count = read(file.bytes.get(), size); count > 0;
         count = read(file.bytes.get() + file.length, size - file.length))
    {
        file.length += static_cast<std::size_t>(count);
        if (file.length == size)
        {
            size *= 2;
            auto larger = std::make_unique_for_overwrite<char[]>(size);
            std::copy_n(file.bytes.get(), file.length, larger.get());
            file.bytes = std::move(larger);
        }
    }
    return file;
}
} // namespace Quenlor
