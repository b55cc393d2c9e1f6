#include "common/StoredText.h"

#include <fmt/format.h>
#include <utf8.h>

namespace Tools
{
std::string Printable(std::string_view text, std::string_view kept, const char* escape)
{
    std::string printable;
    const char* const end = text.data() + text.size();
    for (const char* at = text.data(); at != end;)
    {
        for (const char* const invalid = utf8::find_invalid(at, end); at != invalid;)
        {
            const char* const start = at;
            const auto code = utf8::unchecked::next(at);
            const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
            if (isControl && kept.find(*start) == std::string_view::npos)
                printable += fmt::format(fmt::runtime(escape), static_cast<unsigned>(code));
            else
                printable.append(start, at);
        }
        if (at != end)
            printable += fmt::format(fmt::runtime(escape), static_cast<unsigned char>(*at++));
    }
    return printable;
}

std::string Lower(std::string_view text)
{
    std::string lower{text};
    char before = '\0';
    for (char& character : lower)
    {
        const auto byte = static_cast<unsigned char>(character);
        // U+00C0 to U+00DE are 0xC3 with 0x80 to 0x9E in UTF-8; U+00D7 is the multiplication sign.
        const bool isCapital =
            (byte >= 'A' && byte <= 'Z') || (before == '\xC3' && byte >= 0x80 && byte <= 0x9E && byte != 0x97);
        before = character;
        if (isCapital)
            character = static_cast<char>(byte + 0x20);
    }
    return lower;
}
} // namespace Tools
