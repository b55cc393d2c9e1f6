#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "Doctor.h"

// What differs between systems: one source each.

namespace FraxoInfo
{
/// Whether standard output is a terminal; prepares it to show colours.
bool IsOutputTerminal();

/// The names of all variables of this process.
std::vector<std::string> EnvironmentNames();

/// Whether this user may make files in a folder that exists, or write a file that exists.
bool CanWrite(const std::filesystem::path& path);

/// Whether this process has the rights of an administrator.
bool IsAdministrator();

/// From now on only their owner can read new files. On Windows the folders of a user see to that.
void KeepFilesPrivate();

/// Where the registry is kept, for people.
std::vector<std::string> RegistryPlaces();

/// What is wrong with the registry's own files, where it has any.
std::vector<Finding> ExamineRegistryFiles();
} // namespace FraxoInfo
