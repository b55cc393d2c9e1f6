#pragma once

#include <Quenlor/Utf8String.h>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The version that the newest release before `release` (such as "24.00.00") has recorded for this user.
/// "21.00.00.00" when only release 21 has run, and empty when none has.
Utf8String LastVersionBefore(const Utf8String& release);
} // namespace Quenlor::Fraxo::SharedUtilities::Native
