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
    std::string failure; ///< The message of the exception that reading it throws; empty when it can be used.
};

/// All feature switches. The product's INI file is not made for them: until the user has one, its installed default is
/// read.
std::vector<Feature> ReadFeatures();

/// The INI file that the switches are read from; empty when there is no folder for it.
std::string ProductIniToRead();

std::string Format(const std::vector<Feature>& features);
} // namespace FraxoInfo
