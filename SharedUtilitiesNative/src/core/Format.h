#pragma once

#include <Quenlor/Utf8String.h>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The arguments formatted as printf would.
Utf8String Format(const char* format, ...);
} // namespace Quenlor::Fraxo::SharedUtilities::Native
