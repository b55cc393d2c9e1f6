#include <IniReader.h>

#include "support/FailingMemory.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

#include <gtest/gtest.h>

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::IniReader;

/// The work for 2,000 names in an order that is the worst for many structures.
TEST(IniReaderLimits, ManyNamesAreCheapInAnyOrder)
{
    const ScratchMachine machine;
    const std::filesystem::path file = machine.Root() / "file.ini";
    constexpr std::size_t count = 2000;
    const auto name = [](std::size_t number) { return "name" + std::to_string(10'000 - number); };
    for (const bool areSections : {false, true})
    {
        std::string text = "[s]\n";
        for (std::size_t i = 0; i < count; ++i)
            text += areSections ? '[' + name(i) + "]\nk=1\n" : name(i) + "=1\n";
        WriteFile(file, text);
        Comparisons() = 0;
        IniReader reader;
        ASSERT_TRUE(reader.LoadFile(file.wstring()));
        for (std::size_t i = 0; i < count; ++i)
            ASSERT_EQ(reader.GetIntegerValue(areSections ? name(i) : "s", areSections ? "k" : name(i), 0), 1);
        EXPECT_GT(Comparisons(), count) << "they are not counted";
        EXPECT_LT(Comparisons(), 200 * count) << areSections;
    }
}

TEST(IniReaderLimits, AnswersSurviveAnyFailedAllocation)
{
    const ScratchMachine machine;
    const std::filesystem::path file = machine.Root() / "file.ini";
    const std::string first = "a section of its own";
    const std::string second = "another one, with a longer name";
    WriteFile(file, '[' + first + "]\nk=1\n[" + second + "]\nk=2\n");
    std::size_t failing = 0;
    for (bool hasFailed = true; hasFailed;)
    {
        IniReader reader;
        ASSERT_TRUE(reader.LoadFile(file.wstring()));
        hasFailed = WithFailingAllocation(++failing,
                                          [&]
                                          {
            reader.GetIntegerValue(first, "k", 0);
            reader.GetIntegerValue(second, "k", 0);
        });
        EXPECT_EQ(reader.GetIntegerValue(first, "k", 0), 1) << failing;
        EXPECT_EQ(reader.GetIntegerValue(second, "k", 0), 2) << failing;
    }
    EXPECT_GT(failing, 1U) << "nothing was allocated";
}
} // namespace
