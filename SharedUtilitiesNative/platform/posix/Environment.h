#pragma once

#include <initializer_list>
#include <mutex>
#include <optional>
#include <string>

namespace Quenlor::Posix
{
/// Held by everything that reads or changes the environment: the C library's functions must not do both at once.
/// Visible, so that the base library and the stand-in, each in a shared library of its own, share it.
[[gnu::visibility("default")]] inline std::mutex EnvironmentMutex;

/// The value of a variable. None in a program that runs with more rights than its caller (a set-user-ID program for
/// example): the caller must not decide what it reads and writes.
std::optional<std::string> EnvironmentVariable(const char* name);

/// The first value that is not empty; empty when there is none.
std::string FirstOf(std::initializer_list<const char*> variables);

/// Sets a variable, or removes it when `value` is null. @return 0, or the error number
int SetEnvironmentVariable(const char* name, const char* value);
} // namespace Quenlor::Posix
