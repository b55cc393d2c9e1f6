#pragma once

#include <nlohmann/json_fwd.hpp>

#include "Answer.h"

namespace FraxoInfo
{
/// Replaces what must not leave the machine without the user's consent by placeholders: the names of the user, the
/// account and the project, the e-mail address, and every stored text that these answers came from and that is neither
/// a path nor a number nor one of the product's own words.
///
/// In any letter case. Short ones are replaced only as whole words: a user called "A" must not remove every A.
void Mask(nlohmann::ordered_json& report, const std::vector<Answer>& answers);
} // namespace FraxoInfo
