#include <IniReader.h>

#include <cstddef>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "support/FailingMemory.h"
#include "support/TemporaryFolder.h"

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::IniReader;

/// Names that share a slot in every hash table of up to 1,024 slots.
std::vector<std::string> CollidingNames(std::size_t count)
{
    std::vector<std::string> names;
    for (std::size_t i = 1'000'000; names.size() < count; ++i)
    {
        std::string name = std::to_string(i);
        if ((std::hash<std::string_view>{}(name)&1023U) == 0)
            names.push_back(std::move(name));
    }
    return names;
}

TEST(IniReaderLimits, CollidingNamesAreCheap)
{
    const TemporaryFolder folder;
    const auto names = CollidingNames(500);
    for (const bool areSections : {false, true})
    {
        std::string text = "[s]\n";
        for (auto name = names.rbegin(); name != names.rend(); ++name)
            text += areSections ? '[' + *name + "]\nk=1\n" : *name + "=1\n";
        const std::wstring file = folder.Write(text).wstring();
        Comparisons() = 0;
        IniReader reader;
        ASSERT_TRUE(reader.LoadFile(file));
        for (const std::string& name : names)
            ASSERT_EQ(reader.GetIntegerValue(areSections ? name : "s", areSections ? "k" : name, 0), 1);
        EXPECT_GT(Comparisons(), names.size()) << "they are not counted";
        EXPECT_LT(Comparisons(), 100 * names.size()) << areSections;
    }
}

TEST(IniReaderLimits, AnswersSurviveAnyFailedAllocation)
{
    const TemporaryFolder folder;
    const std::string first = "a section of its own";
    const std::string second = "another one, with a longer name";
    const std::wstring file = folder.Write('[' + first + "]\nk=1\n[" + second + "]\nk=2\n").wstring();
    std::size_t failing = 0;
    for (bool hasFailed = true; hasFailed;)
    {
        IniReader reader;
        ASSERT_TRUE(reader.LoadFile(file));
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
