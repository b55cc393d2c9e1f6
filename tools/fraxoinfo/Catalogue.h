#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ForTools.h"

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

    /// For an operation that provides a user's file: where that file is, without providing it.
    Quenlor::Fraxo::SharedUtilities::Native::UserFile (*userFile)() = nullptr;
};

/// Every such question. Those of the public headers are found by the build.
std::span<const Operation> Catalogue();

/// The operation of that name, with or without its class (`VersionConfig::GetProductName`).
/// @return null when there is none
const Operation* Find(std::string_view name);
} // namespace FraxoInfo
