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
constexpr std::size_t Step = std::size_t{64} * 1024;
} // namespace

std::string_view LineReader::Read(InputFile& file)
{
    while (!m_isAtEnd)
    {
        MakeRoom(file);
        char* const end = m_chunks.back().get() + m_used;
        char* const line = end - m_rest;
        const std::size_t count = file.Read(end, std::min(Room(), Step));
        m_total += count;
        if (count == 0)
        {
            m_isAtEnd = true;
            if (m_rest != 0)
                *end = '\n'; // there is room for it as there was for more of the file
            return {line, m_rest == 0 ? 0 : m_rest + 1};
        }
        m_used += count;
        const std::size_t lines = std::string_view{end, count}.rfind('\n') + 1; // npos + 1 is 0
        if (lines != 0)
        {
            const std::size_t rest = std::exchange(m_rest, count - lines);
            return {line, rest + lines};
        }
        m_rest += count; // one long line so far
    }
    return {};
}

/// Sees to room behind the rest in the last chunk.
void LineReader::MakeRoom(const InputFile& file)
{
    const bool isReleased = std::exchange(m_isReleased, false);
    if (Room() != 0 && !isReleased)
        return;
    const char* const rest = m_chunks.empty() ? nullptr : m_chunks.back().get() + m_used - m_rest;
    if (isReleased && m_size >= std::max(2 * m_rest, Step))
    {
        std::copy_n(rest, m_rest, m_chunks.back().get());
    }
    else
    {
        const std::size_t size = m_rest + std::max(m_rest, NextChunk(file));
        auto chunk = std::make_unique_for_overwrite<char[]>(size);
        std::copy_n(rest, m_rest, chunk.get());
        if (isReleased)
            m_chunks.pop_back();
        m_chunks.push_back(std::move(chunk));
        m_size = size;
    }
    m_used = m_rest;
}

/// One chunk for all that is left of a file that is kept. That takes no more memory than the file, and an allocator
/// that has seen one keeps room for the next: a third of the time in many small chunks went into fresh pages.
std::size_t LineReader::NextChunk(const InputFile& file) const noexcept
{
    if (m_chunks.empty())
        return FirstChunk;
    const std::size_t length = m_isSearching ? 0 : file.Length();
    return length > m_total ? length - m_total + 1 : Step; // 1 for the line feed of a last line without one
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native::Ini
