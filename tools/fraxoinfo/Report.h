#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Catalogue.h"

namespace FraxoInfo
{
/// What an operation answered on this machine.
struct Answer
{
    const Operation* operation;
    Value value;
    std::string failure;        ///< The message of the exception it ended with; empty when it answered.
    std::optional<bool> exists; ///< For files and folders alone.
};

Answer AskFor(const Operation& operation);
std::vector<Answer> AskForEverything();

/// The bare value, as scripts want it: `true` and `false` for a flag.
std::string ToText(const Value& value);

/// All answers under their classes, aligned for reading.
std::string FormatTable(const std::vector<Answer>& answers);

/// An object of classes, each an object of operations, each with `kind` and `value` or `error`, and `exists` for files
/// and folders.
std::string FormatJson(const std::vector<Answer>& answers);
} // namespace FraxoInfo
