#pragma once

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <utility>

#include <Quenlor/TextFile.h>

namespace Quenlor
{
/// @param size how long the text is as far as the system knows: 0 if it does not know, negative if it is not that of a
/// file. One that turns out longer is read as well.
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
    const auto expected = static_cast<std::size_t>(size);
    std::size_t room = std::max<std::size_t>(expected, 4095) + 1; // finds the end without growing
    TextFile file{std::make_unique_for_overwrite<char[]>(room)};
    do
    {
        if (file.length == room)
        {
            room *= 2;
            auto larger = std::make_unique_for_overwrite<char[]>(room);
            std::copy_n(file.bytes.get(), file.length, larger.get());
            file.bytes = std::move(larger);
        }
        const auto count = read(file.bytes.get() + file.length, room - file.length);
        if (count <= 0)
            break;
        file.length += static_cast<std::size_t>(count);
    } while (file.length == room || file.length < expected || expected == 0);
    text = std::move(file);
    return true;
}
} // namespace Quenlor
