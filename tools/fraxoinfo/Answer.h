#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Catalogue.h"
#include "ForTools.h"
#include "common/StoredText.h"

namespace FraxoInfo
{
using Quenlor::Fraxo::SharedUtilities::Native::Source;
using Quenlor::Fraxo::SharedUtilities::Native::Trace;
using Tools::Printable;

/// What an operation answered on this machine.
struct Answer
{
    const Operation* operation;
    Value value;
    std::string failure;        ///< The message of the exception it ended with; empty when it answered.
    std::optional<bool> exists; ///< For files and folders only.
    Trace trace;                ///< What the library asked the machine for it.
};

/// @param provide whether a user's file is made from its installed default when it is missing, as in an application;
///        without it no file of the product is created, and only what an application would look for is looked for
Answer AskFor(const Operation& operation, bool provide);
std::vector<Answer> AskForEverything(bool provide);

/// The bare value, as scripts want it: `true` or `false` for a flag, an item a line for a list.
std::string ToText(const Value& value);

/// The value or the failure on one line, and whether a file or folder is there.
std::string Shown(const Answer& answer);

/// What a source held, or why there is nothing, on one line.
std::string Shown(const Source& source);

/// All answers under their classes, aligned for reading.
std::string Format(const std::vector<Answer>& answers);

/// A line for each source: the place and what it held. `*` marks those that decided.
std::string Format(const Trace& trace);

/// The answer, and where it came from.
std::string Explain(const Answer& answer);
} // namespace FraxoInfo
