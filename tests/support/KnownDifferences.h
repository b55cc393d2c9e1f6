#pragma once

#include <string_view>

/// Why the running test, or one row of its table, cannot hold on this system, whose own functions differ from those of
/// Windows; null where it must hold.
const char* KnownDifference(std::string_view row = {});
