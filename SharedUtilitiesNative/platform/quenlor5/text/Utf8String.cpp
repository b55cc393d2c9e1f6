#include <Quenlor/Utf8String.h>

#include <cstdio>

namespace Quenlor
{
std::uint64_t Utf8String::ReplaceAll(const char* from, const char* to)
{
    const std::string_view search{from ? from : ""};
    const std::string_view replacement{to ? to : ""};
    if (search.empty())
        return 0;

    std::uint64_t count = 0;
    std::string result;
    std::size_t copied = 0;
    for (std::size_t found; (found = m_text.find(search, copied)) != std::string::npos; ++count)
    {
        result.append(m_text, copied, found - copied).append(replacement);
        copied = found + search.length();
    }
    if (count != 0)
        m_text = result.append(m_text, copied);
    return count;
}

void Utf8String::VSprintf(const char* format, std::va_list args)
{
    std::va_list measured;
    va_copy(measured, args);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);

    std::string formatted(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    if (!formatted.empty())
        std::vsnprintf(formatted.data(), formatted.size() + 1, format, args);
    m_text = std::move(formatted); // only now: an argument may point into the old text
}
} // namespace Quenlor
