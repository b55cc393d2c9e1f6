#include <IniReader.h>

#include "support/FailingMemory.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

#include <gtest/gtest.h>

namespace
{
using Quenlor::Fraxo::SharedUtilities::Native::IniReader;

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
