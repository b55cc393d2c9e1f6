#pragma once

#include <cstdint>
#include <string>

#include "SharedUtilitiesExport.h"

/// @file
/// Free helpers on standard narrow text. Any thread may call any of them at any time. What a program changes of the
/// environment by other means than SetEnvironmentVariableValue is as thread-safe as its C runtime.

/// Whether two numbers are equal within a tolerance that grows with their size: `epsilon` times the power of two at
/// or below the larger magnitude (with the exponent cut towards zero, so 1 for everything between 0.5 and 2).
/// @return false for a difference equal to the tolerance, so with an `epsilon` of 0 true only for two zeros; false when
///         a number is infinite or not a number
SHAREDUTILITIES_EXPORT bool AreFloatNumbersEqual(float a, float b, float epsilon);

/// `value` in fixed-point notation with `precision` digits after the decimal point, and no point for 0 digits.
/// The decimal point is that of the global C++ locale.
SHAREDUTILITIES_EXPORT std::string FormatFloatToString(float value, int precision);

/// The value of an environment variable, in the process's narrow encoding; empty when it is missing.
SHAREDUTILITIES_EXPORT std::string GetEnvironmentVariableValue(const std::string& name);

/// Sets an environment variable of this process; an empty value removes it. A name that cannot be set is ignored.
SHAREDUTILITIES_EXPORT void SetEnvironmentVariableValue(const std::string& name, const std::string& value);

/// The first `position` characters; the whole text when it has no more.
SHAREDUTILITIES_EXPORT std::string LeftOf(std::string& text, std::uint64_t position);

/// The characters after `position`, without the one at it: LeftOf and RightOf split a text around a separator.
/// @return the whole text when `position` is greater than its length
/// @throws std::out_of_range saying "invalid string position" when `position` is the length of a text that is not empty
SHAREDUTILITIES_EXPORT std::string RightOf(std::string& text, std::uint64_t position);

/// Removes from the front of `text` every byte of the set `characters`.
/// @return `text`
SHAREDUTILITIES_EXPORT std::string& TrimLeft(std::string& text, std::string characters);

/// Removes from the end of `text` every byte of the set `characters`.
/// @return `text`
SHAREDUTILITIES_EXPORT std::string& TrimRight(std::string& text, std::string characters);

/// Removes from both ends of `text` every byte of the set `characters`.
/// @return `text`
SHAREDUTILITIES_EXPORT std::string& TrimString(std::string& text, std::string characters);
