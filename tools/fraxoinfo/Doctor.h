#pragma once

#include <string>
#include <vector>

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

std::string FormatFindings(const std::vector<Finding>& findings);

/// What is wrong with the registry's own files, where it has any. One source per system.
std::vector<Finding> ExamineRegistryFiles();
} // namespace FraxoInfo
