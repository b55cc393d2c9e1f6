#pragma once

#include <optional>

#include <Quenlor/Utf8String.h>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The root when the program runs from a build output tree, ending in a separator; nothing in an installation. One
/// question for both, because the answer takes looking at the environment and at the executable's path.
std::optional<Utf8String> OutputRoot();
} // namespace Quenlor::Fraxo::SharedUtilities::Native
