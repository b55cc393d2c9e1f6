#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include <Quenlor/InputFile.h>

namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
{
/// Reads a file in pieces of whole lines and owns the memory they lie in.
class LineReader final
{
public:
    /// The next lines, each ending in a line feed, which a last line without one is given. Empty at the end.
    std::string_view Read(InputFile& file);

    /// Gives up the lines of the last Read: their memory may be used for the next ones.
    void Release() noexcept { m_isReleased = m_isSearching = true; }

private:
    void MakeRoom(const InputFile& file);
    std::size_t NextChunk(const InputFile& file) const noexcept;
    std::size_t Room() const noexcept { return m_size - m_used; }

    std::vector<std::unique_ptr<char[]>> m_chunks;
    std::size_t m_size = 0;    // of the last chunk
    std::size_t m_used = 0;    // of it
    std::size_t m_rest = 0;    // the length of the unfinished line at the end of that, with which the next piece starts
    std::size_t m_total = 0;   // how much has been read
    bool m_isReleased = false; // whether nothing but the rest is needed of the last chunk
    bool m_isSearching = false; // whether there has been a Release: then most of the file is not kept
    bool m_isAtEnd = false;
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
