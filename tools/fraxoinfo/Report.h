#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Catalogue.h"
#include "common/StoredText.h"

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

/// @param provide whether a user's file is made from its installed default when it is missing, as in an application;
///        without it no file of the product is created
Answer AskFor(const Operation& operation, bool provide);
std::vector<Answer> AskForEverything(bool provide);

/// The bare value, as scripts want it: `true` or `false` for a flag, an item a line for a list.
std::string ToText(const Value& value);

/// The value or the failure on one line, and whether a file or folder is there.
std::string Shown(const Answer& answer);

using Tools::Printable;

/// All answers under their classes, aligned for reading.
std::string FormatTable(const std::vector<Answer>& answers);

/// An object of classes, each an object of operations, each with `kind` and `value` or `error`, and `exists` for files
/// and folders.
std::string FormatJson(const std::vector<Answer>& answers);
} // namespace FraxoInfo
