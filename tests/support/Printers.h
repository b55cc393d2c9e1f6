#pragma once

#include <ostream>

#include <Quenlor/Utf8String.h>

namespace Quenlor
{
/// How failed expectations show the base library's texts: not as bytes of an object.
inline void PrintTo(const Utf8String& text, std::ostream* out)
{
    *out << '"' << text.c_str() << '"';
}
} // namespace Quenlor
