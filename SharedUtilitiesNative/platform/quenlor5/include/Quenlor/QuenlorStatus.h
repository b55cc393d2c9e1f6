#pragma once

namespace Quenlor
{
/// The result of a base-library operation: 0 is success, anything else a failure.
enum class QuenlorStatus : int
{
    Success = 0,
    MalformedText = 1, ///< A conversion replaced malformed input by U+FFFD.
    NotFound = 2,      ///< What was asked for does not exist.
};

/// The result of a path operation: 0 is success. Callers rely on the values of Success and AlreadyExists.
enum class QnFileNameStatus : int
{
    Success = 0,
    Failed = 1,
    AlreadyExists = 2, ///< Nothing was done, because it exists already.
    InvalidName = 3,   ///< Null, or a name that this system cannot have.
};
} // namespace Quenlor
