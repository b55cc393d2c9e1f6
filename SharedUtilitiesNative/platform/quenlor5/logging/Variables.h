#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include <Quenlor/Utf8String.h>

namespace Quenlor::NativeLogging
{
/// What `${...}` can stand for in a file name.
struct Variables
{
    std::string logger;  ///< ${logger}, as far as a file name can hold it
    std::string process; ///< ${pid}
    std::map<std::string, Utf8String (*)(), std::less<>> named;
};

/// `text` with every `${...}` replaced; `${env:NAME}` stands for an environment variable.
/// @throws std::runtime_error whose text is the fault: a variable that has no value, or a `${` without its `}`; and
///         what the function of a named variable throws
std::string Expand(std::string_view text, const Variables& variables);
} // namespace Quenlor::NativeLogging
