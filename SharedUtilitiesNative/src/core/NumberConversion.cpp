#include "core/NumberConversion.h"

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
/// Calls one of the strto... functions and gives errno back as it was.
/// @return the number, and whether the function reported that it is out of range
template<class Function>
auto Convert(Function function, const std::string& text, const char* messageWhenNone)
{
    const int errnoOfCaller = std::exchange(errno, 0);
    char* end = nullptr;
    const auto number = function(text.c_str(), &end);
    const bool isOutOfRange = std::exchange(errno, errnoOfCaller) == ERANGE;
    if (end == text.c_str())
        throw std::invalid_argument(messageWhenNone);
    return std::pair{number, isOutOfRange};
}
} // namespace

int ToInt(const std::string& text)
{
    const auto parse = [](const char* start, char** end) { return std::strtol(start, end, 10); };
    const auto [number, isOutOfRange] = Convert(parse, text, "invalid stoi argument");
    // Where long has 32 bits only errno tells, where it has 64 only the value does.
    if (isOutOfRange || !std::in_range<int>(number))
        throw std::out_of_range("stoi argument out of range");
    return static_cast<int>(number);
}

float ToFloat(const std::string& text)
{
    const auto parse = [](const char* start, char** end) { return std::strtof(start, end); };
    const auto [number, isOutOfRange] = Convert(parse, text, "invalid stof argument");
    if (isOutOfRange)
        throw std::out_of_range("stof argument out of range");
    return number;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
