#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "configfiles/UserFile.h"

namespace FraxoInfo
{
using Value = std::variant<std::string, bool, std::int64_t, double, std::vector<std::string>>;

/// What an operation's value is, which decides how it is shown.
enum class Kind
{
    Text,
    List,
    Number,
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

    /// For an operation that provides a user's file: where that file lies, without providing it.
    Quenlor::Fraxo::SharedUtilities::Native::UserFile (*userFile)() = nullptr;
};

/// Every such question, the operations of a class together. A new getter is one line there.
std::span<const Operation> Catalogue();

/// The operation of that name, which may stand alone or behind its class (`VersionConfig::GetProductName`).
/// @return null when there is none
const Operation* Find(std::string_view name);
} // namespace FraxoInfo
