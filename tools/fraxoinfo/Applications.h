#pragma once

#include <string>
#include <vector>

#include "Answer.h"

namespace FraxoInfo
{
/// A product that is installed on its own, as the library sees it.
struct Application
{
    std::string name;
    Answer answer; ///< Where it is, or for Word its program id; empty when it was not found.

    const std::string& Failure() const { return answer.failure; }
};

std::vector<Application> FindApplications();

/// Each application with its answer, and below it where that came from.
std::string Format(const std::vector<Application>& applications);
} // namespace FraxoInfo
