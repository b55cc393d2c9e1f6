#include <IniReader.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"

namespace
{
std::size_t allocationsUntilFailure = 0; // 0 when none is to fail
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

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::IniReader;

TEST(IniReaderWithoutMemory, AnswersRightAfterAnyAllocationHasFailed)
{
    const TemporaryFolder folder;
    const std::string first = "a section of its own";
    const std::string second = "another one, whose name has no room where that of the first one was";
    const std::string key = "k";
    const std::wstring file = folder.Write('[' + first + "]\nk=1\n[" + second + "]\nk=2\n").wstring();
    std::size_t failing = 0;
    for (bool hasFailed = true; hasFailed;)
    {
        IniReader reader;
        ASSERT_TRUE(reader.LoadFile(file));
        allocationsUntilFailure = ++failing;
        try
        {
            reader.GetIntegerValue(first, key, 0);
            reader.GetIntegerValue(second, key, 0);
        }
        catch (const std::bad_alloc&)
        {
        }
        hasFailed = allocationsUntilFailure == 0;
        allocationsUntilFailure = 0;
        EXPECT_EQ(reader.GetIntegerValue(first, key, 0), 1) << failing;
        EXPECT_EQ(reader.GetIntegerValue(second, key, 0), 2) << failing;
    }
    EXPECT_GT(failing, 1U) << "nothing was allocated";
}
} // namespace
