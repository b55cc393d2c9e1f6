#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Applications.h"
#include "Doctor.h"
#include "Features.h"
#include "IniLines.h"
#include "LogSetup.h"

// The JSON of docs/fraxoinfo-json.md. The library for JSON finds these functions by their name.

namespace FraxoInfo
{
using Json = nlohmann::ordered_json;

/// What two reports say about one thing.
struct Compared
{
    std::string name;
    std::string first;
    std::string second;
};

void to_json(Json& json, const std::vector<Answer>& answers);
void to_json(Json& json, const std::vector<Feature>& features);
void to_json(Json& json, const std::vector<Application>& applications);
void to_json(Json& json, const LogSetup& setup);
void to_json(Json& json, const Finding& finding);
void to_json(Json& json, const IniLine& line);
void to_json(Json& json, const Compared& compared);

/// The answers as an object of classes, each an object of operations with their sources.
Json WithSources(const std::vector<Answer>& answers);

/// Indented, with a line end, and safe on a terminal.
std::string Dump(const Json& json);

/// Everything that a support case needs, as one object.
/// @param withPersonalData false leaves out what names a user, an account or a project, and every stored text that is
///        neither a path nor a number nor one of the words that the product itself stores
std::string MakeReport(bool withPersonalData);

/// A self-contained page that shows this JSON: a report, or an object with what was compared.
std::string MakePage(const std::string& json);

/// The JSON of a page; any other text as it is.
std::string JsonOf(const std::string& reportOrPage);

/// Compares two files of `report` (JSON or page) or of `--json`: first the folders, which are folded in all that
/// follows, so that another root is one difference; then everything else except the time.
/// @return also what both say alike
/// @throws std::runtime_error naming the file and the fault when it is not such a report
std::vector<Compared> Compare(const std::string& firstFile, const std::string& secondFile);

/// The differences among them: the name, and a line for each side.
std::string Format(const std::vector<Compared>& compared);
} // namespace FraxoInfo
