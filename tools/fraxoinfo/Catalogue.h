#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace FraxoInfo
{
using Value = std::variant<std::string, bool>;

/// What an operation's value is, which decides how it is shown.
enum class Kind
{
    Text,
    Flag,
    Directory,
    File,
};

/// One question that the library answers without being given an argument.
struct Operation
{
    std::string_view className;
    std::string_view name;
    Kind kind;
    Value (*ask)(); ///< May throw what the operation throws.
};

/// Every such question, the operations of a class together. A new getter is one line there.
std::span<const Operation> Catalogue();

/// The operation of that name, which may stand alone or behind its class (`VersionConfig::GetProductName`).
/// @return null when there is none
const Operation* Find(std::string_view name);
} // namespace FraxoInfo
