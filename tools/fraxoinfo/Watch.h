#pragma once

#include <string>
#include <vector>

#include "Answer.h"

namespace FraxoInfo
{
/// A line for each answer that is another one now, with the time, the old and the new value, and one for each source
/// that moved. Empty when nothing has changed.
std::string Changes(const std::vector<Answer>& before, const std::vector<Answer>& after, const std::string& time);

/// Prints the changes of these answers as they happen, until the process is ended or its output cannot be written.
void Watch(const std::vector<const Operation*>& operations);
} // namespace FraxoInfo
