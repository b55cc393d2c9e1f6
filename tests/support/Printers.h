#pragma once

#include <ostream>
#include <string>

#include <Quenlor/Utf8String.h>
#include <Quenlor/WString.h>
#include <gtest/gtest.h>

namespace Quenlor
{
/// How failed expectations show the base library's strings: as text, not as bytes of an object.
template<typename Text>
void PrintTo(const Text& text,
             std::ostream* out) requires std::is_same_v<Text, Utf8String> || std::is_same_v<Text, WString>
{
    *out << ::testing::PrintToString(std::basic_string{text.c_str(), text.length()});
}
} // namespace Quenlor
