#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Report.h"

namespace FraxoInfo
{
/// What FormatJson prints.
nlohmann::ordered_json ToJson(const std::vector<Answer>& answers);

/// Indented, with a line end.
std::string Dump(const nlohmann::ordered_json& json);
} // namespace FraxoInfo
