#include "core/NumberConversion.h"

#include <stdexcept>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
int ToInt(const std::string& text)
try
{
    return std::stoi(text);
}
catch (const std::invalid_argument&)
{
    throw std::invalid_argument("invalid stoi argument");
}
catch (const std::out_of_range&)
{
    throw std::out_of_range("stoi argument out of range");
}

float ToFloat(const std::string& text)
try
{
    return std::stof(text);
}
catch (const std::invalid_argument&)
{
    throw std::invalid_argument("invalid stof argument");
}
catch (const std::out_of_range&)
{
    throw std::out_of_range("stof argument out of range");
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
