#pragma once

#include <string>
#include <vector>

#include "Applications.h"
#include "Doctor.h"
#include "Features.h"
#include "IniLines.h"
#include "LogSetup.h"

// The JSON of docs/fraxoinfo-json.md: indented, with a line end.

namespace FraxoInfo
{
/// An object of classes, each an object of operations.
std::string ToJson(const std::vector<Answer>& answers);
std::string ToJson(const Answer& answer); ///< The operation with its sources.
std::string ToJson(const std::vector<Feature>& features);
std::string ToJson(const std::vector<Application>& applications);
std::string ToJson(const LogSetup& setup);
std::string ToJson(const std::vector<Finding>& findings);
std::string ToJson(const std::vector<IniLine>& lines);
std::string ToJson(const std::vector<std::string>& names);

/// Everything that a support case needs, as one object.
/// @param withPersonalData false leaves out what names a user, an account or a project, and every stored text that is
///        neither a path nor a number nor one of the words that the product itself stores
std::string MakeReport(bool withPersonalData);

/// A self-contained page that shows the report, or the differences, which the text is.
std::string MakePage(const std::string& json);

/// The JSON of a page; any other text as it is.
std::string JsonOf(const std::string& reportOrPage);
} // namespace FraxoInfo
