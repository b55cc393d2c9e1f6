#pragma once

#include <compare>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <Quenlor/QuenlorExport.h>

namespace Quenlor
{
/// Narrow text in UTF-8 with value semantics.
///
/// The length is counted in bytes and kept explicitly, so the text may hold embedded NULs; a NUL always follows it.
/// Order and equality are by bytes. Nothing checks that the bytes are valid UTF-8.
class QUENLOR_EXPORT Utf8String final
{
public:
    Utf8String() noexcept = default;

    /// @{

    /// Takes the bytes as they are; a null pointer gives the empty text.
    // Implicit on purpose: literals and standard strings are passed wherever a Utf8String is taken.
    Utf8String(const char* text) : m_text{text ? text : ""} {}
    Utf8String(std::string text) noexcept : m_text{std::move(text)} {}
    Utf8String(std::string_view text) : m_text{text} {}
    /// @}

    /// @{

    /// As that of std::string; the length is in bytes.
    const char* c_str() const noexcept { return m_text.c_str(); }
    const char* data() const noexcept { return m_text.data(); }
    std::size_t length() const noexcept { return m_text.length(); }
    bool empty() const noexcept { return m_text.empty(); }
    /// @}

    /// A copy of the text up to its first NUL.
    std::string ToStdString() const { return m_text.c_str(); } // NOLINT: the cut is wanted

    /// Replaces every occurrence of `from` by `to`, left to right; inserted text is not looked at again.
    /// @return how many were replaced; 0 for an empty or null `from`. A null `to` removes.
    std::uint64_t ReplaceAll(const char* from, const char* to);

    /// Replaces the content by `args` formatted as printf would. The arguments may point into this string.
    /// A format that cannot be rendered leaves the empty text.
    void VSprintf(const char* format, std::va_list args);

    /// @{

    /// Appends all of `right`, NULs included.
    Utf8String& operator+=(const Utf8String& right)
    {
        m_text += right.m_text;
        return *this;
    }

    friend Utf8String operator+(Utf8String left, const Utf8String& right)
    {
        left += right;
        return left;
    }
    /// @}

    friend bool operator==(const Utf8String&, const Utf8String&) noexcept = default;
    // NOLINTNEXTLINE(modernize-use-nullptr): the 0 that a default of this kind is compared with is no pointer
    friend std::strong_ordering operator<=>(const Utf8String&, const Utf8String&) noexcept = default;

private:
    std::string m_text;
};
} // namespace Quenlor
