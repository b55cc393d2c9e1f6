#include "CoreUtilities.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iomanip>
#include <optional>
#include <sstream>
#include <stdexcept>

#include <Platform/Win32.h>

#include "core/Trace.h"

bool AreFloatNumbersEqual(float a, float b, float epsilon)
{
    if (a == 0.0F && b == 0.0F)
        return true;
    const float magnitude = std::max(std::fabs(a), std::fabs(b));
    if (!std::isfinite(a) || !std::isfinite(b))
        return false;
    // Cut towards zero, not rounded down: callers' tolerances below 0.5 are tuned to that.
    const int exponent = static_cast<int>(std::log2(magnitude));
    const auto scale = static_cast<float>(std::ldexp(1.0, exponent));
    return std::fabs(a - b) < scale * epsilon;
}

std::string FormatFloatToString(float value, int precision)
{
    std::ostringstream stream;
    stream << std::fixed << std::setprecision(precision) << value;
    return stream.str();
}

std::string GetEnvironmentVariableValue(const std::string& name)
{
    using namespace Quenlor::Fraxo::SharedUtilities::Native;
    std::size_t size = 0;
    ::getenv_s(&size, nullptr, 0, name.c_str());
    std::string value(size, '\0');
    if (size != 0)
        ::getenv_s(&size, value.data(), value.size(), name.c_str());
    value.resize(std::strlen(value.c_str()));
    if (trace)
        trace->push_back(
            {Source::Kind::Environment, name, size == 0 ? std::nullopt : std::optional{value}, !value.empty()});
    return value;
}

void SetEnvironmentVariableValue(const std::string& name, const std::string& value)
{
    ::_putenv_s(name.c_str(), value.c_str());
}

std::string LeftOf(std::string& text, std::uint64_t position)
{
    return text.substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(position, text.length())));
}

std::string RightOf(std::string& text, std::uint64_t position)
{
    if (text.empty() || position > text.length())
        return text;
    // Only the position right after the text fails; beyond it the whole text is the answer. Callers know both.
    if (position == text.length())
        throw std::out_of_range("invalid string position");
    return text.substr(static_cast<std::size_t>(position) + 1);
}

std::string& TrimLeft(std::string& text, std::string characters)
{
    return text.erase(0, std::min(text.find_first_not_of(characters), text.length()));
}

std::string& TrimRight(std::string& text, std::string characters)
{
    return text.erase(text.find_last_not_of(characters) + 1); // npos + 1 is 0: all of it goes
}

std::string& TrimString(std::string& text, std::string characters)
{
    return TrimLeft(TrimRight(text, characters), characters);
}
