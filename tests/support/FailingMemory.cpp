#include "support/FailingMemory.h"

#include <cstdlib>
#include <new>

namespace
{
thread_local std::size_t allocationsUntilFailure = 0; // 0 when none is to fail
}

extern "C" int memcmp(const void* left, const void* right, std::size_t count)
{
    ++Comparisons();
    const auto* a = static_cast<const unsigned char*>(left);
    const auto* b = static_cast<const unsigned char*>(right);
    for (; count != 0; --count, ++a, ++b)
    {
        if (*a != *b)
            return *a < *b ? -1 : 1;
    }
    return 0;
}

std::size_t& Comparisons()
{
    static std::size_t comparisons = 0;
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
    const bool hasFailed = allocationsUntilFailure == 0;
    allocationsUntilFailure = 0;
    return hasFailed;
}
