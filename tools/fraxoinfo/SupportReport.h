#pragma once

#include <string>

namespace FraxoInfo
{
/// Everything that a support case needs, as one JSON object: all answers, the feature switches, other products, the
/// log's configuration, what doctor finds.
/// @param withPersonalData false leaves out the user's name, account and e-mail address and the project's id and name,
///        wherever they occur
std::string MakeSupportReport(bool withPersonalData);

/// What differs between two reports of this kind, or two of FormatJson: a line for the operation, and one for each
/// side. Empty when nothing does.
/// @throws std::runtime_error naming the file and the fault when one is no such report
std::string CompareReports(const std::string& firstFile, const std::string& secondFile);
} // namespace FraxoInfo
