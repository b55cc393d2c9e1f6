#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "Answer.h"
#include "Terminal.h"

namespace FraxoInfo
{
/// Something that needs attention, in plain words.
struct Finding
{
    std::string problem;
    std::string remedy;
};

/// Adds a finding, for which the caller sets the remedy.
template<class... Values>
Finding& Add(std::vector<Finding>& findings, fmt::format_string<Values...> problem, Values&&... values)
{
    return findings.emplace_back(Finding{fmt::format(problem, std::forward<Values>(values)...), {}});
}

/// Examines the installation that this process would use. No file of the product is created or changed.
std::vector<Finding> Examine();

std::string Format(const std::vector<Finding>& findings);

/// Whether this user may write a file or, if it is missing, make it in the nearest folder that exists.
bool CanWriteOrMake(const std::filesystem::path& file);
} // namespace FraxoInfo
