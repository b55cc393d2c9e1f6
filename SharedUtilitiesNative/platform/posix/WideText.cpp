#include "posix/WideText.h"

#include <iterator>
#include <utf8.h>

namespace Quenlor::Posix
{
namespace
{
constexpr char32_t ReplacementCharacter = 0xFFFD;

constexpr bool IsCodePoint(char32_t character) noexcept
{
    return character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
}
} // namespace

std::string Utf8Of(std::wstring_view text)
{
    std::string utf8;
    for (const wchar_t unit : text)
    {
        const auto character = static_cast<char32_t>(unit);
        utf8::unchecked::append(IsCodePoint(character) ? character : ReplacementCharacter, std::back_inserter(utf8));
    }
    return utf8;
}

std::wstring WideOf(std::string_view utf8)
{
    std::string valid;
    utf8::replace_invalid(utf8.begin(), utf8.end(), std::back_inserter(valid), ReplacementCharacter);
    std::wstring text;
    utf8::unchecked::utf8to32(valid.begin(), valid.end(), std::back_inserter(text));
    return text;
}
} // namespace Quenlor::Posix
