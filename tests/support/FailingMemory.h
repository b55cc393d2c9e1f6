#pragma once

#include <cstddef>
#include <functional>

// The source replaces operator new and memcmp for the whole program.

/// Runs `body` with the allocation of this number failing, counted from 1. Catches what that throws.
/// @return whether there were so many
bool WithFailingAllocation(std::size_t number, const std::function<void()>& body);

/// How often the program has called memcmp, with which the library compares texts.
std::size_t& Comparisons();
