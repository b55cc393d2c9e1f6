#pragma once

#include <compare>
#include <concepts>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <version>

#ifdef __cpp_lib_format
#include <format>
#endif

#include <Quenlor/QuenlorExport.h>

namespace Quenlor
{
/// Narrow text in UTF-8 with value semantics.
///
/// The length is counted in bytes and kept explicitly, so the text may hold embedded NULs; a NUL always follows it.
/// Order and equality are by bytes. Nothing checks that the bytes are valid UTF-8.
///
/// It is made from text, compares with text, and converts to std::string_view; it can be printed,
/// formatted and used as a key:
/// ```cpp
/// const Utf8String path = DirectoryConfig::GetHelpDirectory() + "index.html";
/// if (path.empty() || path == "index.html") return;
/// std::ifstream page{ToNativePath(path)}; // not path.c_str(): Windows takes no UTF-8 there, Linux no backslashes
/// ```
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
    std::size_t size() const noexcept { return m_text.size(); }
    bool empty() const noexcept { return m_text.empty(); }
    /// @}

    /// All of the text, NULs included; valid until it changes.
    operator std::string_view() const noexcept { return m_text; }

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

    friend Utf8String operator+(Utf8String left, const Utf8String& right) { return std::move(left += right); }
    /// @}

    /// @{

    /// By bytes; a null pointer is the empty text.
    friend bool operator==(const Utf8String&, const Utf8String&) noexcept = default;
    // NOLINTNEXTLINE(modernize-use-nullptr): the 0 that a default of this kind is compared with is not a pointer
    friend std::strong_ordering operator<=>(const Utf8String&, const Utf8String&) noexcept = default;
    template<std::convertible_to<std::string_view> Text>
    friend bool operator==(const Utf8String& left, const Text& right) noexcept
    {
        return left.m_text == View(right);
    }
    template<std::convertible_to<std::string_view> Text>
    friend std::strong_ordering operator<=>(const Utf8String& left, const Text& right) noexcept
    {
        return left.m_text <=> View(right);
    }
    /// @}

    /// Writes all of the text, NULs included.
    template<class Traits>
    friend std::basic_ostream<char, Traits>& operator<<(std::basic_ostream<char, Traits>& out, const Utf8String& text)
    {
        return out << std::basic_string_view<char, Traits>{text.data(), text.length()};
    }

private:
    static std::string_view View(const char* text) noexcept { return text ? text : ""; }
    static std::string_view View(std::string_view text) noexcept { return text; }

    std::string m_text;
};
} // namespace Quenlor

/// Equal to that of the same text as a std::string_view.
template<>
struct std::hash<Quenlor::Utf8String>
{
    /// The hash of the text.
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>{}(text); }
};

#ifdef __cpp_lib_format
/// As for std::string_view.
template<>
struct std::formatter<Quenlor::Utf8String> : std::formatter<std::string_view>
{
};
#endif
