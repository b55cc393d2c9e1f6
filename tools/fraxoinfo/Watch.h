#pragma once

#include <string>
#include <vector>

#include "Answer.h"

namespace FraxoInfo
{
/// For each answer that has changed a line with the time, the old and the new value, and one for each source that has.
/// Empty when nothing has changed.
std::string Changes(const std::vector<Answer>& before, const std::vector<Answer>& after, const std::string& time);

/// Prints these answers as they change, until the process is ended or its output cannot be written.
void Watch(const std::vector<const Operation*>& operations);
} // namespace FraxoInfo
