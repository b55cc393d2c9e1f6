#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Answer.h"

namespace FraxoInfo
{
/// Something that needs attention, in plain words.
struct Finding
{
    std::string problem;
    std::string remedy;
};

/// Examines the installation that this process would use. Only looks: no file of the product is created or
/// changed.
std::vector<Finding> Examine();

/// What the places that the library asked for these answers say about the machine: settings of another type, and
/// settings that are stored where this release does not look.
void ExamineStoredSettings(std::vector<Finding>& findings, const std::vector<Answer>& answers);

/// Variables that override what is installed, and switches that are unusable or unknown.
/// @param missing what is missing in the installation, which a variable may explain
void ExamineVariables(std::vector<Finding>& findings, const std::vector<Finding>& missing);
void ExamineFeatures(std::vector<Finding>& findings);

std::string Format(const std::vector<Finding>& findings);

/// Whether this user may write a file, or else make it in the nearest folder that exists.
bool CanWriteOrMake(const std::filesystem::path& file);
} // namespace FraxoInfo
