#include "support/FailingMemory.h"

#include <cstdlib>
#include <new>

namespace
{
thread_local std::size_t allocationsUntilFailure = 0; // 0 when none is to fail
}

void* operator new(std::size_t size)
{
    const bool fails = allocationsUntilFailure != 0 && --allocationsUntilFailure == 0;
    if (void* const memory = fails ? nullptr : std::malloc(size))
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
