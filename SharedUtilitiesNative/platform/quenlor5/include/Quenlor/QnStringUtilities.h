#pragma once

#include <cstddef>
#include <vector>

#include <Quenlor/QuenlorExport.h>
#include <Quenlor/QuenlorStatus.h>
#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>

namespace Quenlor
{
/// Conversions between narrow and wide text, and other small text operations.
///
/// Malformed input never fails a conversion: each malformed sequence becomes one U+FFFD, and the status says so.
/// A count says how many units of `text` to convert, NULs included; `UpToNul` stops at the terminating NUL.
/// A null `text` is the empty text. Thread-safety: no shared state.
class QUENLOR_EXPORT QnStringUtilities final
{
public:
    QnStringUtilities() = delete;

    static constexpr std::size_t UpToNul = static_cast<std::size_t>(-1); ///< A count: the text ends at its NUL.

    /// @{

    /// Replaces `out` by the converted text.
    /// @return MalformedText when U+FFFD replaces something malformed
    static QuenlorStatus WCharToUtf8(Utf8String& out, const wchar_t* text, std::size_t count = UpToNul);
    static QuenlorStatus Utf8ToWChar(WString& out, const char* text, std::size_t count = UpToNul);
    /// @}

    /// Converts into a caller's buffer of `bufferCount` units and ends it with a NUL. Text that does not fit is cut,
    /// never in the middle of a character.
    /// @return the buffer
    static wchar_t* Utf8ToWChar(wchar_t* buffer, const char* text, std::size_t bufferCount);

    /// Cuts `text` at every character in `delimiters` and appends the pieces, empty ones included, to
    /// `pieces`. A character that follows one of `escapes` (may be null) is taken literally and the escape dropped.
    static void Split(const char* text, const char* delimiters, const char* escapes, std::vector<Utf8String>& pieces);

    /// The decimal number at the start of `text` (white space and a sign may precede it); 0 when there is none.
    /// A number beyond the range of int gives the nearest end of the range. Only ASCII digits and ASCII white space
    /// are understood, on every system and in every locale.
    static int Wtoi(const wchar_t* text);
};
} // namespace Quenlor
