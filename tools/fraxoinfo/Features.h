#pragma once

#include <string>
#include <vector>

namespace FraxoInfo
{
/// A feature switch and what decided it.
struct Feature
{
    std::string flag;
    int value = 0;       ///< 0 is off.
    std::string source;  ///< "environment", "INI file <path>" or "off by default".
    std::string failure; ///< The message of the exception that asking for it ends with; empty when it can be used.
};

/// All feature switches, looked up without providing the product's INI file: while the user has none, the installed
/// default that it would be made from is read.
std::vector<Feature> ReadFeatures();

/// The product's INI file that the switches are read from; empty when there is no folder for it.
std::string ProductIniToRead();

std::string Format(const std::vector<Feature>& features);
} // namespace FraxoInfo
