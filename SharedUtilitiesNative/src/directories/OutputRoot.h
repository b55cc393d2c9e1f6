#pragma once

#include <optional>

#include <Quenlor/Utf8String.h>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The root, ending in a separator, when the program runs from a build output tree; nothing in an installation.
std::optional<Utf8String> OutputRoot();
} // namespace Quenlor::Fraxo::SharedUtilities::Native
