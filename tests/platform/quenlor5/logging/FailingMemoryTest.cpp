#include <cstdlib>
#include <new>
#include <string>
#include <utility>

#include "Logger.h"
#include "platform/quenlor5/logging/LoggingTest.h"

namespace
{
thread_local std::size_t allocationsUntilFailure = 0; // 0 when none is to fail
}

// Those of the whole program.

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

namespace
{
using namespace Quenlor::NativeLogging;

TEST_F(LoggingTest, IsCompleteAgainAfterAnyFailedAllocation)
{
    using Make = ILogger* (*)(const Quenlor::WString& name);
    const Make activateAndGet = [](const Quenlor::WString&)
    {
        LoggingConfig::ActivateProvider(LoggingProviderType::ConfigurationFile);
        return LoggingManager::GetLogger(L"");
    };
    Configure(ToFile);
    std::string expected;
    for (const Make make : {Make{&LoggingManager::GetLogger}, activateAndGet})
    {
        std::size_t number = 0;
        for (bool hasFailed = true; hasFailed;)
        {
            const Quenlor::WString name = L"a name too long to be held in place " + std::to_wstring(++number);
            allocationsUntilFailure = number;
            ILogger* logger = make(name);
            hasFailed = std::exchange(allocationsUntilFailure, 0) == 0;
            EXPECT_TRUE(logger || hasFailed) << number;
            logger = make(name);
            ASSERT_TRUE(logger) << number;
            logger->Error(std::to_string(number));
            expected += std::to_string(number) + '\n';
        }
        EXPECT_GT(number, 10U);
    }
    EXPECT_EQ(Lines("a.log"), expected);
}

TEST_F(LoggingTest, IsStartedAgainAfterAnyFailedAllocation)
{
    using Quenlor::Fraxo::SharedUtilities::Native::Logger;
    std::size_t number = 0;
    do
    {
        allocationsUntilFailure = ++number;
        EXPECT_NO_THROW(Logger::Get());
    } while (std::exchange(allocationsUntilFailure, 0) == 0 && number < 1000);
    EXPECT_TRUE(Logger::Get());
    EXPECT_GT(number, 10U);
}
} // namespace
