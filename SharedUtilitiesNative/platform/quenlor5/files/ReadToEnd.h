#pragma once

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <utility>

#include <Quenlor/TextFile.h>

namespace Quenlor
{
/// @param size how long the text is as far as the system knows, negative if it is not that of a file; any length is
/// read
/// @param read puts at most `count` bytes at a place: read(place, count) returns how many, 0 or less at the end
/// @return false, with the reason in errno, for what is not a file or longer than 256 MB
template<class Read>
bool ReadToEnd(TextFile& text, std::int64_t size, Read read)
{
    if (size < 0 || size > std::int64_t{256} << 20) // a file may claim to be longer than any memory
    {
        errno = size < 0 ? EINVAL : EFBIG;
        return false;
    }
    std::size_t room = std::max<std::size_t>(static_cast<std::size_t>(size), 4095) + 1; // finds the end without growing
    TextFile file{std::make_unique_for_overwrite<char[]>(room)};
    for (auto count = read(file.bytes.get(), room); count > 0;
         count = read(file.bytes.get() + file.length, room - file.length))
    {
        file.length += static_cast<std::size_t>(count);
        if (file.length == room)
        {
            room *= 2;
            auto larger = std::make_unique_for_overwrite<char[]>(room);
            std::copy_n(file.bytes.get(), file.length, larger.get());
            file.bytes = std::move(larger);
        }
    }
    text = std::move(file);
    return true;
}
} // namespace Quenlor
