#pragma once

#include <ostream>
#include <string>

#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>
#include <gtest/gtest.h>

// How failed expectations show the base library's strings: as text, not as bytes of an object.
namespace Quenlor
{
inline void PrintTo(const Utf8String& text, std::ostream* out)
{
    *out << ::testing::PrintToString(std::string{text.data(), text.length()});
}

inline void PrintTo(const WString& text, std::ostream* out)
{
    *out << ::testing::PrintToString(std::wstring{text.c_str(), text.length()});
}
} // namespace Quenlor
