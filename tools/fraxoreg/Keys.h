#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <Platform/Win32.h>

#include "registry/Key.h"

namespace FraxoReg
{
using Quenlor::StandIn::Registry::Key;

struct KeyName
{
    HKEY root = nullptr;
    std::string path; ///< Single backslashes between its levels, none at its ends.

    std::string FullName() const; ///< The root's long name, and the path as it was typed.
};

/// @throws WrongUse for anything but `ROOT\path` with a root in its short or long form, in any letter case
KeyName ParseKeyName(std::string_view text);

/// Where a key is kept: one of HKEY_CLASSES_ROOT in the user's classes if it exists there, else in the machine's.
KeyName PlaceOf(const KeyName& name);

// The functions below throw Failure with the words for an administrator when the registry refuses.

/// Hands the key to `read`, which must not use the registry; false when it is missing. A key of HKEY_CLASSES_ROOT is
/// merged as on Windows: what is in the user's classes, and what only the machine's have.
bool ReadKey(
    const KeyName& name, const std::function<void(const Key&)>& read = [](const Key&) {});

/// Makes all changes of `edit` in a hive or, if it returns another code than 0, none.
void ChangeHive(HKEY root, const std::function<LSTATUS(Key&)>& edit);
} // namespace FraxoReg
