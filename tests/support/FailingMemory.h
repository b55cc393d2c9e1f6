#pragma once

#include <cstddef>
#include <functional>

/// Runs `body`, in which the allocation of this number fails, counted from 1.
/// @return whether there was one. An exception that it caused ends here.
// In a source of its own, which brings an operator new and a memcmp for the whole program.
bool WithFailingAllocation(std::size_t number, const std::function<void()>& body);

/// How often the whole program has called memcmp, which the sources below `src` and `platform` compare texts with.
std::size_t& Comparisons();
