#include "core/Format.h"

#include <cstdarg>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
Utf8String Format(const char* format, ...)
{
    Utf8String text;
    std::va_list args;
    va_start(args, format);
    text.VSprintf(format, args);
    va_end(args);
    return text;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
