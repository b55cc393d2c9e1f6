#pragma once

#include <string>
#include <string_view>

#include <Platform/Win32.h>

#include "Operations.h"

// Values as an administrator types and reads them.

namespace FraxoReg
{
inline std::string ShownName(const std::string& valueName)
{
    return valueName.empty() ? "(Default)" : valueName;
}

/// Between the strings of REG_MULTI_SZ: what was given with the switch, else `\0`. @throws WrongUse
std::string SeparatorOf(const Arguments& arguments, std::string_view switchName);

DWORD TypeOfName(std::string_view name); ///< In any letter case. @throws WrongUse when unknown
std::string NameOfType(DWORD type);      ///< The number when the type has no name.

std::string FormatData(DWORD type, std::string_view data, std::string_view separator);

/// The data to store for the text after `/d`.
/// @throws WrongUse when the text is not of that type
std::string ParseData(DWORD type, const std::string& text, std::string_view separator);
} // namespace FraxoReg
