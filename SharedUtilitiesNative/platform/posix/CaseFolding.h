#pragma once

#include <string>
#include <string_view>

namespace Quenlor::Posix
{
/// The capital of one code point by one fixed table, whatever the process locale is; itself when it has none.
char32_t ToUpper(char32_t character) noexcept;

/// A UTF-8 name in the form that is equal for all spellings that differ in letter case alone. Bytes that are no valid
/// UTF-8 stay as they are, so two different names of that kind never become one.
std::string FoldCase(std::string_view name);
} // namespace Quenlor::Posix
