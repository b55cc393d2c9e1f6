#include <Platform/Win32.h>

#include <cerrno>
#include <charconv>
#include <cwchar>
#include <iconv.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "posix/Environment.h"
#include "posix/WideText.h"

namespace
{
constexpr UINT WesternEuropean = 1252;

struct ConverterCloser
{
    void operator()(iconv_t converter) const noexcept { ::iconv_close(converter); }
};
using Converter = std::unique_ptr<void, ConverterCloser>;

/// Null for a code page that the system does not know.
Converter Open(const std::string& to, const std::string& from)
{
    const iconv_t converter = ::iconv_open(to.c_str(), from.c_str());
    return Converter{converter == reinterpret_cast<iconv_t>(-1) ? nullptr : converter};
}

/// One character; none, and the reason in errno, when it has no counterpart.
std::optional<std::string> Convert(const Converter& converter, std::string_view character)
{
    char output[16];
    char* in = const_cast<char*>(character.data()); // iconv only reads
    char* out = output;
    std::size_t inLeft = character.length();
    std::size_t outLeft = sizeof output;
    const bool failed = ::iconv(converter.get(), &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1);
    const int reason = errno;
    // Some code pages wait for what may follow.
    ::iconv(converter.get(), nullptr, nullptr, &out, &outLeft);
    errno = reason;
    return failed ? std::nullopt : std::optional{std::string(output, out)};
}

class CodePage final
{
public:
    explicit CodePage(const std::string& name) : m_encoder{Open(name, "WCHAR_T")}, m_decoder{Open("WCHAR_T", name)} {}
    explicit CodePage(UINT number) : CodePage("CP" + std::to_string(number)) {}

    bool IsKnown() const noexcept { return m_encoder && m_decoder; }

    /// None when the code page has no such character; the look-alikes that iconv knows are not that character.
    std::optional<std::string> Encode(wchar_t character) const
    {
        const std::string_view wide{reinterpret_cast<const char*>(&character), sizeof character};
        if (auto bytes = Convert(m_encoder, wide))
            return Convert(m_decoder, *bytes) == wide ? bytes : std::nullopt;
        std::string byte(1, static_cast<char>(character));
        return character >= 0x80 && character <= 0x9F && IsUndefined(byte) ? std::optional{byte} : std::nullopt;
    }

private:
    /// Windows takes the bytes that a code page leaves undefined, as 1252 does 81, for the control characters of those
    /// numbers; iconv does not.
    bool IsUndefined(const std::string& byte) const { return !Convert(m_decoder, byte) && errno == EILSEQ; }

    Converter m_encoder;
    Converter m_decoder;
};

UINT AnsiCodePage()
{
    const std::string chosen = Quenlor::Posix::EnvironmentVariable("QUENLOR_ANSI_CODE_PAGE").value_or("");
    UINT number = 0;
    const auto [end, error] = std::from_chars(chosen.data(), chosen.data() + chosen.length(), number);
    const bool isNumber = error == std::errc{} && end == chosen.data() + chosen.length();
    return isNumber && (number == CP_UTF8 || CodePage{number}.IsKnown()) ? number : WesternEuropean;
}
} // namespace

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int count, LPSTR buffer, int, LPCSTR substitute,
                        LPBOOL isSubstituteUsed)
{
    if (!text || count >= 0 || buffer || substitute)
        return 0;
    const std::wstring_view source{text, std::wcslen(text) + 1};
    const UINT number = codePage == CP_ACP ? AnsiCodePage() : codePage;
    if (number == CP_UTF8)
        return flags == 0 && !isSubstituteUsed ? static_cast<int>(Quenlor::Posix::Utf8Of(source).length()) : 0;

    const CodePage target{number};
    if (!target.IsKnown() || (flags & ~WC_NO_BEST_FIT_CHARS))
        return 0;
    std::size_t length = 0;
    BOOL isUsed = FALSE;
    for (const wchar_t character : source)
    {
        const auto bytes = target.Encode(character);
        isUsed |= !bytes;
        length += bytes ? bytes->length() : character > 0xFFFF ? 2U : 1U; // a `?` for each unit that it has on Windows
    }
    if (isSubstituteUsed)
        *isSubstituteUsed = isUsed;
    return static_cast<int>(length);
}
