#pragma once

#include <string>

#include <Quenlor/QnStringUtilities.h>
#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// As std::stoi, with the same messages on every system.
/// @throws std::invalid_argument saying "invalid stoi argument" when `text` does not start with a number
/// @throws std::out_of_range saying "stoi argument out of range" when it does not fit 32 bits
int ToInt(const std::string& text);

/// As std::stof, with the same messages on every system.
/// @throws std::invalid_argument saying "invalid stof argument" when `text` does not start with a number
/// @throws std::out_of_range saying "stof argument out of range" on overflow or underflow
float ToFloat(const std::string& text);

/// Like ToInt where a number is not required: 0 when there is none, the nearest end of the range when it does not fit.
inline int LeadingNumber(const Utf8String& text)
{
    return QnStringUtilities::Wtoi(WString{text.c_str(), false}.c_str());
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
