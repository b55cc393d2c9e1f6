#include "ini/LineReader.h"

#include <algorithm>
#include <utility>

namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
{
namespace
{
// Most files fit the first chunk. Larger ones are read in steps that the processor's cache holds, so that a piece is
// still there when it is searched.
constexpr std::size_t FirstChunk = std::size_t{4} * 1024;
constexpr std::size_t UsualChunk = std::size_t{64} * 1024;
} // namespace

std::string_view LineReader::Read(std::istream& stream)
{
    while (stream)
    {
        MakeRoom();
        char* const begin = m_chunks.back().get();
        stream.read(begin + m_rest.length(), static_cast<std::streamsize>(m_size - m_rest.length()));
        const std::size_t length = m_rest.length() + static_cast<std::size_t>(stream.gcount());
        const std::string_view text{begin, length};
        if (!stream)
        {
            if (text.empty() || text.back() == '\n')
                return text;
            begin[length] = '\n'; // there is room: the stream ended before the chunk was full
            return {begin, length + 1};
        }
        const std::size_t end = text.rfind('\n') + 1; // npos + 1 is 0
        m_rest = text.substr(end);
        if (end != 0)
            return text.substr(0, end);
        m_isReleased = true; // one long line so far, nothing of which has been returned
    }
    return {};
}

/// Sees to a last chunk that starts with m_rest and has room for as much again behind it.
void LineReader::MakeRoom()
{
    const std::size_t needed = std::max(2 * m_rest.length(), FirstChunk);
    if (m_isReleased && m_size >= std::max(needed, UsualChunk))
    {
        std::ranges::copy(m_rest, m_chunks.back().get());
    }
    else
    {
        const std::size_t size = std::max(needed, std::min(4 * m_size, UsualChunk));
        auto chunk = std::make_unique_for_overwrite<char[]>(size);
        std::ranges::copy(m_rest, chunk.get());
        if (m_isReleased)
            m_chunks.pop_back();
        m_chunks.push_back(std::move(chunk));
        m_size = size;
    }
    m_isReleased = false;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
