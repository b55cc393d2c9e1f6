#include <Quenlor/QnStringUtilities.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <utf8.h>
#include <utility>

namespace Quenlor
{
namespace
{
constexpr wchar_t ReplacementCharacter = 0xFFFD;

template<class Character>
std::basic_string_view<Character> View(const Character* text, std::size_t count = QnStringUtilities::UpToNul)
{
    if (!text)
        return {};
    return count == QnStringUtilities::UpToNul ? std::basic_string_view<Character>{text}
                                               : std::basic_string_view<Character>{text, count};
}

/// wchar_t holds UTF-16 on Windows and UTF-32 elsewhere.
constexpr bool IsUtf16 = sizeof(wchar_t) == 2;

constexpr bool IsTrail(wchar_t unit) noexcept
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Puts U+FFFD in place of each unit that is not text: halves of a pair, and what is beyond the last code point.
std::wstring Repaired(std::wstring_view text)
{
    std::wstring repaired{text};
    for (std::size_t i = 0; i < text.length(); ++i)
    {
        const auto unit = static_cast<char32_t>(text[i]);
        if (IsUtf16 && unit >= 0xD800 && unit <= 0xDBFF && i + 1 < text.length() && IsTrail(text[i + 1]))
            ++i;
        else if (unit > 0x10FFFF || (unit >= 0xD800 && unit <= 0xDFFF))
            repaired[i] = ReplacementCharacter;
    }
    return repaired;
}

/// Moves the ASCII that `source` starts with to `out`: it is the same in all encodings. Most paths are nothing else,
/// and take a tenth of the time that decoding takes.
template<class From, class To>
void TakeAscii(std::basic_string_view<From>& source, std::basic_string<To>& out)
{
    std::size_t length = 0;
    out.resize(source.length());
    for (; length < source.length() && static_cast<std::make_unsigned_t<From>>(source[length]) < 0x80; ++length)
        out[length] = static_cast<To>(source[length]);
    out.resize(length);
    source.remove_prefix(length);
}
} // namespace

QuenlorStatus QnStringUtilities::WCharToUtf8(Utf8String& out, const wchar_t* text, std::size_t count)
{
    std::wstring_view source = View(text, count);
    std::string converted;
    TakeAscii(source, converted);
    const std::wstring valid = Repaired(source);
    if constexpr (IsUtf16)
        utf8::unchecked::utf16to8(valid.begin(), valid.end(), std::back_inserter(converted));
    else
        utf8::unchecked::utf32to8(valid.begin(), valid.end(), std::back_inserter(converted));
    out = std::move(converted);
    return valid == source ? QuenlorStatus::Success : QuenlorStatus::MalformedText;
}

QuenlorStatus QnStringUtilities::Utf8ToWChar(WString& out, const char* text, std::size_t count)
{
    std::string_view source = View(text, count);
    std::wstring converted;
    TakeAscii(source, converted);
    std::string valid;
    utf8::replace_invalid(source.begin(), source.end(), std::back_inserter(valid), ReplacementCharacter);
    if constexpr (IsUtf16)
        utf8::unchecked::utf8to16(valid.begin(), valid.end(), std::back_inserter(converted));
    else
        utf8::unchecked::utf8to32(valid.begin(), valid.end(), std::back_inserter(converted));
    out = std::move(converted);
    return valid == source ? QuenlorStatus::Success : QuenlorStatus::MalformedText;
}

wchar_t* QnStringUtilities::Utf8ToWChar(wchar_t* buffer, const char* text, std::size_t bufferCount)
{
    if (!buffer || bufferCount == 0)
        return buffer;
    WString converted;
    Utf8ToWChar(converted, text);
    const wchar_t* const source = converted.c_str();
    std::size_t length = std::min(converted.length(), bufferCount - 1);
    if (IsUtf16 && length != 0 && length < converted.length() && IsTrail(source[length]))
        --length; // the cut would separate a pair
    std::copy_n(source, length, buffer);
    buffer[length] = L'\0';
    return buffer;
}

void QnStringUtilities::Split(const char* text, const char* delimiters, const char* escapes,
                              std::vector<Utf8String>& pieces)
{
    const std::string_view source = View(text), cuts = View(delimiters), literals = View(escapes);
    std::string piece;
    for (std::size_t i = 0; i < source.length(); ++i)
    {
        if (literals.find(source[i]) != std::string_view::npos && i + 1 < source.length())
            piece += source[++i];
        else if (cuts.find(source[i]) == std::string_view::npos)
            piece += source[i];
        else
            pieces.emplace_back(std::exchange(piece, {}));
    }
    pieces.emplace_back(std::move(piece));
}

int QnStringUtilities::Wtoi(const wchar_t* text)
{
    // Not wcstol: which digits and white space it knows depends on the system and the locale.
    if (!text)
        return 0;
    while (*text == L' ' || (*text >= L'\t' && *text <= L'\r'))
        ++text;
    const bool isNegative = *text == L'-';
    if (*text == L'-' || *text == L'+')
        ++text;
    constexpr std::int64_t Beyond = std::int64_t{INT_MAX} + 1;
    std::int64_t number = 0;
    for (; *text >= L'0' && *text <= L'9'; ++text)
        number = std::min(number * 10 + (*text - L'0'), Beyond);
    return static_cast<int>(isNegative ? -number : std::min<std::int64_t>(number, INT_MAX));
}
} // namespace Quenlor
