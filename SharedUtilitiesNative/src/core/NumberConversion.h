#pragma once

#include <string>

#include <Quenlor/QnStringUtilities.h>
#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The decimal number at the start of `text`: white space and a sign may precede it, whatever follows is ignored.
/// The messages are the same on every system, which those of std::stoi are not. errno is left as it is.
/// @throws std::invalid_argument saying "invalid stoi argument" when there is no number
/// @throws std::out_of_range saying "stoi argument out of range" when it does not fit 32 bits
int ToInt(const std::string& text);

/// Like ToInt for a floating-point number, as the C runtime's strtof reads it.
/// @throws std::invalid_argument saying "invalid stof argument" when there is no number
/// @throws std::out_of_range saying "stof argument out of range" when strtof reports overflow or underflow
float ToFloat(const std::string& text);

/// Like ToInt where a number is not required: 0 when there is none, the nearest end of the range when it does not fit.
inline int LeadingNumber(const Utf8String& text)
{
    return QnStringUtilities::Wtoi(WString{text.c_str(), false}.c_str());
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
