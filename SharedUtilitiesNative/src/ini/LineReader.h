#pragma once

#include <cstddef>
#include <istream>
#include <memory>
#include <string_view>
#include <vector>

namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
{
/// Reads a stream in pieces of whole lines and owns the memory they lie in.
class LineReader final
{
public:
    /// The next lines, each ending in a line feed, which a last line without one is given. Empty at the end.
    std::string_view Read(std::istream& stream);

    /// Gives up the lines of the last Read: their memory may be used for the next ones.
    void Release() noexcept { m_isReleased = true; }

private:
    void MakeRoom();

    std::vector<std::unique_ptr<char[]>> m_chunks;
    std::size_t m_size = 0;    // of the last chunk
    std::string_view m_rest;   // the unfinished line at its end, which the next piece starts with
    bool m_isReleased = false; // whether nothing but m_rest is needed of it
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
