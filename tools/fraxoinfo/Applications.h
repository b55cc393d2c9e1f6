#pragma once

#include <string>
#include <vector>

#include "Inquiries.h"

namespace FraxoInfo
{
/// An application that is installed on its own, as the library sees it.
struct Application
{
    std::string name;
    std::string answer; ///< Where it is, or for Word its program id; empty when it was not found.
    bool isThere;       ///< Found, and on the disk if the answer is a path.
    std::vector<Inquiry> inquiries;
};

std::vector<Application> FindApplications();

/// Each application with its answer, and below it what was asked; `*` marks the registry place that decided.
std::string FormatApplications(const std::vector<Application>& applications);
} // namespace FraxoInfo
