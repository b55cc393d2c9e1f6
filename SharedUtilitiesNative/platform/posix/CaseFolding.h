#pragma once

#include <string>
#include <string_view>

namespace Quenlor::Posix
{
/// The capital of one code point by one fixed table, whatever the process locale is; itself when it has none.
char32_t ToUpper(char32_t character) noexcept;

/// A UTF-8 name in the form that is equal for all spellings that differ only in letter case. Bytes that are not valid
/// UTF-8 stay as they are, so that no two different names become one.
std::string FoldCase(std::string_view name);
} // namespace Quenlor::Posix
