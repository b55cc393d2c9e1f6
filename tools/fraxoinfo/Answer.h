#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ForTools.h"
#include "common/StoredText.h"

namespace FraxoInfo
{
using Quenlor::Fraxo::SharedUtilities::Native::Source;
using Quenlor::Fraxo::SharedUtilities::Native::Trace;
using Quenlor::Fraxo::SharedUtilities::Native::UserFile;
using Tools::Printable;
using Value = std::variant<std::string, bool, std::int64_t, double, std::vector<std::string>>;

/// What an operation's value is.
enum class Kind
{
    Text,
    List,
    Number,
    Flag,
    Directory,
    File,
};

/// A question that the library answers without an argument.
struct Operation
{
    std::string_view className;
    std::string_view name;
    Kind kind;
    Value (*ask)(); ///< May throw what the operation throws.

    /// For an operation that provides a user's file: where that file is, without providing it.
    UserFile (*userFile)() = nullptr;
};

/// Every such question. The build finds them in the public headers.
std::span<const Operation> Catalogue();

/// The operation of that name, with or without its class (`VersionConfig::GetProductName`); null if it is unknown.
const Operation* Find(std::string_view name);

/// What an operation answered on this machine.
struct Answer
{
    const Operation* operation;
    Value value;
    std::string failure;        ///< The message of the exception that it threw; empty when it answered.
    std::optional<bool> exists; ///< Only for files and folders.
    Trace trace;                ///< What the library asked the machine.
};

/// @param provide whether a missing user's file is made from its installed default, as in an application; otherwise no
///        file of the product is created, and the file and its default are only looked for
Answer AskFor(const Operation& operation, bool provide);
std::vector<Answer> AskForEverything(bool provide);

/// The bare value, as scripts want it: `true` or `false` for a flag, one item per line for a list.
std::string ToText(const Value& value);

/// The value or the failure on one line, and whether a file or folder exists.
std::string Shown(const Answer& answer);

/// What a source held, or why there is nothing, on one line.
std::string Shown(const Source& source);

/// All answers under their classes, aligned for reading.
std::string Format(const std::vector<Answer>& answers);

/// One line per source: the place and what it held. `*` marks those that decided.
std::string Format(const Trace& trace);

/// The answer, and where it came from.
std::string Explain(const Answer& answer);
} // namespace FraxoInfo
