#pragma once

namespace FraxoInfo
{
/// The program: does what the command line says.
/// @return the exit status: 0, 1 when an operation failed, something needs attention or differs, and 2 for wrong use,
///         a file that cannot be read, and output that cannot be written
int Run(int argc, const char* const* argv);
} // namespace FraxoInfo
