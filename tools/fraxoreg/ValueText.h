#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <Platform/Win32.h>

// Values as an administrator types and reads them.

namespace FraxoReg
{
inline std::string ShownName(const std::string& valueName)
{
    return valueName.empty() ? "(Default)" : valueName;
}

inline constexpr std::string_view DefaultSeparator =
    R"(\0)"; ///< Between the texts of REG_MULTI_SZ: these two characters.

std::optional<DWORD> TypeOfName(std::string_view name) noexcept; ///< In any letter case; none when unknown.
std::string NameOfType(DWORD type);                              ///< The number when the type has no name.

std::string FormatData(DWORD type, std::string_view data, std::string_view separator = DefaultSeparator);

/// The data to store for the text behind `/d`; without `/d` those of an empty text.
/// @throws WrongUse when the text is none of that type
std::string ParseData(DWORD type, const std::optional<std::string>& text,
                      std::string_view separator = DefaultSeparator);
} // namespace FraxoReg
