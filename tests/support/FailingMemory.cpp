#include "support/FailingMemory.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

namespace
{
thread_local std::size_t allocationsUntilFailure = 0; // 0 when none is to fail
std::size_t comparisons = 0;
} // namespace

extern "C" int memcmp(const void* left, const void* right, std::size_t count)
{
    ++comparisons;
    const auto* const start = static_cast<const unsigned char*>(left);
    const auto [a, b] = std::mismatch(start, start + count, static_cast<const unsigned char*>(right));
    return a == start + count ? 0 : *a - *b;
}

std::size_t& Comparisons()
{
    return comparisons;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    const bool fails = allocationsUntilFailure != 0 && --allocationsUntilFailure == 0;
    return fails ? nullptr : std::malloc(size);
}

void* operator new(std::size_t size)
{
    if (void* const memory = ::operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc{};
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

bool WithFailingAllocation(std::size_t number, const std::function<void()>& body)
{
    allocationsUntilFailure = number;
    try
    {
        body();
    }
    catch (const std::bad_alloc&)
    {
    }
    return std::exchange(allocationsUntilFailure, 0) == 0;
}
