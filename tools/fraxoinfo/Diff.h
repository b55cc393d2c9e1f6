#pragma once

#include <string>
#include <vector>

namespace FraxoInfo
{
/// What two reports say about one thing.
struct Compared
{
    std::string name;
    std::string first;
    std::string second;
};

/// Compares two files of `report` (JSON or page) or of `--json`: first the folders, which are then folded in all that
/// follows, so that another root is one difference; then everything else but the time.
/// @throws std::runtime_error naming the file and the fault when one is not such a report
std::vector<Compared> Compare(const std::string& firstFile, const std::string& secondFile);

/// The differences among them: a line for the name, and one for each side. Empty when there are none.
std::string Format(const std::vector<Compared>& compared);

std::string ToJson(const std::vector<Compared>& compared); ///< An array of the differences.

/// A page that shows them side by side.
std::string MakePage(const std::vector<Compared>& compared);
} // namespace FraxoInfo
