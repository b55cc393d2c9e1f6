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

int Deliver(std::string_view converted, char* buffer, int size)
{
    const int length = static_cast<int>(converted.length());
    if (size != 0 && size < length)
        return 0;
    if (size != 0)
        converted.copy(buffer, converted.length());
    return length;
}
} // namespace

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int count, LPSTR buffer, int size, LPCSTR substitute,
                        LPBOOL isSubstituteUsed)
{
    if (!text || count == 0 || size < 0 || (!buffer && size != 0))
        return 0;
    const std::wstring_view source{text, count < 0 ? std::wcslen(text) + 1 : static_cast<std::size_t>(count)};
    const UINT number = codePage == CP_ACP ? AnsiCodePage() : codePage;
    if (number == CP_UTF8)
    {
        const bool isAllowed = flags == 0 && !substitute && !isSubstituteUsed;
        return isAllowed ? Deliver(Quenlor::Posix::Utf8Of(source), buffer, size) : 0;
    }

    const CodePage target{number};
    if (!target.IsKnown() || (flags & ~WC_NO_BEST_FIT_CHARS))
        return 0;
    std::string converted;
    BOOL isUsed = FALSE;
    for (const wchar_t character : source)
    {
        if (const auto bytes = target.Encode(character))
        {
            converted += *bytes;
            continue;
        }
        isUsed = TRUE;
        const int units = character > 0xFFFF ? 2 : 1; // on Windows
        for (int unit = 0; unit < units; ++unit)
            converted += substitute ? substitute : "?";
    }
    if (isSubstituteUsed)
        *isSubstituteUsed = isUsed;
    return Deliver(converted, buffer, size);
}
