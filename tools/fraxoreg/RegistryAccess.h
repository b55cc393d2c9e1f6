#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <Platform/Win32.h>

#include "registry/RegistryTree.h"

namespace FraxoReg
{
using Quenlor::StandIn::Registry::Key;
using Quenlor::StandIn::Registry::Value;

struct KeyName
{
    HKEY root = nullptr;
    std::string path; ///< Single backslashes between its levels, none at its ends.

    std::string FullName() const; ///< The root's long name, and the path as it was typed.
};

/// @throws WrongUse for anything but `ROOT\path` with a root in its short or long form, in any letter case
KeyName ParseKeyName(std::string_view text);

// The functions below throw Failure with the words for an administrator when the registry refuses. What is passed to
// them must not use the registry.

/// Hands the key to `read`. A key of HKEY_CLASSES_ROOT is shown as Windows merges it: what is in the user's classes,
/// and what only the machine's have.
void ReadKey(const KeyName& name, const std::function<void(const Key&)>& read);

bool HasKey(const KeyName& name);
bool HasValue(const KeyName& name, std::string_view valueName); ///< False also when the key is missing.

/// What HKEY_CLASSES_ROOT stands for in a hive of its own; `classes` is HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER.
KeyName InClassesOf(HKEY classes, std::string_view path);

/// Where the key is kept: one of HKEY_CLASSES_ROOT in the user's classes if it exists there, else in the machine's.
KeyName PlaceOf(const KeyName& name);
/// Where the value of a key is kept: likewise.
KeyName PlaceOfValue(const KeyName& name, std::string_view valueName);

/// Changes a hive in one step, or not at all when `edit` returns another code than 0.
void ChangeHive(HKEY root, const std::function<LSTATUS(Key&)>& edit);

/// Throws unless this process may change the hive.
void RequireWritable(HKEY root);

/// Copies what `target` does not have. Values that both have stay as they are.
void CopyMissing(Key& target, const Key& source);
} // namespace FraxoReg
