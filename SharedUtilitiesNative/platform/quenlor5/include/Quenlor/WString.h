#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include <Quenlor/QuenlorExport.h>

namespace Quenlor
{
/// Wide text with value semantics: UTF-16 on Windows, UTF-32 elsewhere.
class QUENLOR_EXPORT WString final
{
public:
    WString() noexcept = default;

    /// @{

    /// Takes the units as they are; a null pointer gives the empty text.
    // Implicit on purpose, like Utf8String.
    WString(const wchar_t* text) : m_text{text ? text : L""} {}
    WString(std::wstring text) noexcept : m_text{std::move(text)} {}
    /// @}

    /// From UTF-8; malformed input becomes U+FFFD. The flag selects an encoding in other products of the family;
    /// here narrow text is UTF-8 whatever its value.
    WString(const char* utf8, bool flag);

    /// @{

    /// As that of std::wstring; the length is in units of wchar_t.
    const wchar_t* c_str() const noexcept { return m_text.c_str(); }
    std::size_t length() const noexcept { return m_text.length(); }
    bool empty() const noexcept { return m_text.empty(); }
    /// @}

    /// Whether `part` occurs anywhere in this text, in any letter case; the empty text occurs everywhere.
    bool ContainsI(const WString& part) const;

    /// This text in capitals, unit by unit, by one fixed table: never by the process locale. The length stays.
    WString ToUpperCase() const;

    friend bool operator==(const WString&, const WString&) noexcept = default;

private:
    std::wstring m_text;
};
} // namespace Quenlor
