#include "posix/CaseFolding.h"

#include <algorithm>
#include <clocale>
#include <cwctype>
#include <iterator>
#include <utf8.h>

namespace Quenlor::Posix
{
namespace
{
/// The C library's own Unicode table. Null where the system lacks it: then only ASCII letters have capitals.
locale_t UnicodeLocale() noexcept
{
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return unicode;
}

constexpr bool IsAscii(char character) noexcept
{
    return static_cast<unsigned char>(character) < 0x80;
}

constexpr char ToUpperAscii(char character) noexcept
{
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}
} // namespace

char32_t ToUpper(char32_t character) noexcept
{
    if (character < 0x80)
        return static_cast<char32_t>(ToUpperAscii(static_cast<char>(character)));
    const locale_t unicode = UnicodeLocale();
    if (!unicode)
        return character;
    const auto upper = static_cast<char32_t>(::towupper_l(static_cast<wint_t>(character), unicode));
    return upper < 0x80 ? character : upper; // as on Windows: no letter folds into ASCII, dotless i among them
}

std::string FoldCase(std::string_view name)
{
    std::string folded{name};
    std::transform(folded.begin(), folded.end(), folded.begin(), ToUpperAscii);
    if (std::all_of(name.begin(), name.end(), IsAscii)) // as nearly all are; reading a setting folds several
        return folded;
    folded.clear();
    for (auto next = name.begin(); next != name.end();)
    {
        const auto invalid = utf8::find_invalid(next, name.end());
        while (next != invalid)
            utf8::unchecked::append(ToUpper(utf8::unchecked::next(next)), std::back_inserter(folded));
        if (next != name.end())
            folded += *next++;
    }
    return folded;
}
} // namespace Quenlor::Posix
