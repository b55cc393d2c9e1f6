#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace FraxoInfo
{
/// The operations that somebody who typed `name` may have meant, the nearest first; at most three, none when nothing
/// is near.
std::vector<std::string_view> NearestNames(std::string_view name);
} // namespace FraxoInfo
