#include "support/ScratchMachine.h"

#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

// Everything else in these tests relies on this: nothing of a machine outlives it, and nothing is found in a new one.

TEST(ScratchMachine, LeavesNothingBehind)
{
    std::filesystem::path root;
    for (int round = 0; round < 2; ++round)
    {
        const ScratchMachine machine{ScratchMachine::ClassesRoot::Used};
        for (const HKEY hive : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_CLASSES_ROOT})
        {
            EXPECT_FALSE(machine.HasKey(hive, "FraxoPro"));
            machine.WriteText(hive, R"(FraxoPro\22.00.00)", "Text", "text");
        }
        root = machine.Root();
        std::ofstream{root / "file"} << "content";
    }
    EXPECT_FALSE(exists(root));
}

TEST(ScratchMachine, GivesTheEnvironmentBack)
{
    ::_putenv_s("FRAXO_PRO_LANGUAGE", "ja");
    {
        ScratchMachine machine;
        EXPECT_EQ(std::getenv("FRAXO_PRO_LANGUAGE"), nullptr);
        machine.SetEnvironment("FRAXO_PRO_LANGUAGE", "1");
        machine.SetEnvironment("FPRO_FEATURE_NONE", "1");
    }
    EXPECT_STREQ(std::getenv("FRAXO_PRO_LANGUAGE"), "ja");
    EXPECT_EQ(std::getenv("FPRO_FEATURE_NONE"), nullptr);
    ::_putenv_s("FRAXO_PRO_LANGUAGE", "");
}

TEST(ScratchMachine, RefusesChangesWhileReadOnly)
{
    const ScratchMachine machine;
    machine.WriteText(HKEY_CURRENT_USER, "Key", "Value", "before");
    const auto write = []
    {
        HKEY key = nullptr;
        ::RegOpenKeyExA(HKEY_CURRENT_USER, "Key", 0, KEY_WRITE, &key);
        const LSTATUS status = ::RegSetValueExA(key, "Value", 0, REG_SZ, reinterpret_cast<const BYTE*>("after"), 6);
        ::RegCloseKey(key);
        return status;
    };
    LSTATUS refused = ERROR_SUCCESS;
    machine.WhileReadOnly(HKEY_CURRENT_USER, "Key", [&] { refused = write(); });
    EXPECT_NE(refused, ERROR_SUCCESS);
    EXPECT_EQ(write(), ERROR_SUCCESS);
}
