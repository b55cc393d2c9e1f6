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
            machine.WriteNumber(hive, R"(FraxoPro\22.00.00)", "Number", 0x01020304);
            EXPECT_EQ(machine.ReadData(hive, R"(FraxoPro\22.00.00)", "Text"), (StoredValue{REG_SZ, {"text", 5}}));
            EXPECT_EQ(machine.ReadData(hive, R"(FraxoPro\22.00.00)", "Number"), (StoredValue{REG_DWORD, "\4\3\2\1"}));
            EXPECT_EQ(machine.ReadData(hive, R"(FraxoPro\22.00.00)", "Other"), std::nullopt);
        }
        EXPECT_NE(machine.Root(), root);
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
        for (const char* const name : {"FRAXO_PRO_LANGUAGE", "FPRO_FEATURE_NONE"})
        {
            machine.SetEnvironment(name, "1");
            machine.SetEnvironment(name, "2");
            EXPECT_STREQ(std::getenv(name), "2");
        }
    }
    EXPECT_STREQ(std::getenv("FRAXO_PRO_LANGUAGE"), "ja");
    EXPECT_EQ(std::getenv("FPRO_FEATURE_NONE"), nullptr);
    ::_putenv_s("FRAXO_PRO_LANGUAGE", "");
}

TEST(ScratchMachine, StoresExactlyTheGivenBytes)
{
    const ScratchMachine machine;
    for (const std::string_view bytes : {std::string_view{"1000"}, std::string_view{"a\0b", 3}, std::string_view{}})
    {
        machine.WriteData(HKEY_CURRENT_USER, "Key", "Text", REG_SZ, bytes);
        EXPECT_EQ(machine.ReadData(HKEY_CURRENT_USER, "Key", "Text"), (StoredValue{REG_SZ, std::string{bytes}}));
    }
}

TEST(ScratchMachine, RefusesChangesWhileReadOnly)
{
    const ScratchMachine machine;
    machine.WriteText(HKEY_CURRENT_USER, "Key", "Value", "before");
    const auto write = []
    {
        HKEY key = nullptr;
        LSTATUS status = ::RegCreateKeyExA(HKEY_CURRENT_USER, "Key", 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
        if (status == ERROR_SUCCESS)
            status = ::RegSetValueExA(key, "Value", 0, REG_SZ, reinterpret_cast<const BYTE*>("after"), 6);
        ::RegCloseKey(key);
        return status;
    };
    const auto stored = [&] { return machine.ReadData(HKEY_CURRENT_USER, "Key", "Value"); };
    LSTATUS refused = ERROR_SUCCESS;
    std::optional<StoredValue> meanwhile;
    machine.WhileReadOnly(HKEY_CURRENT_USER, "Key",
                          [&]
                          {
                              refused = write();
                              meanwhile = stored();
                          });
    EXPECT_NE(refused, ERROR_SUCCESS);
    EXPECT_EQ(meanwhile, (StoredValue{REG_SZ, {"before", 7}}));
    EXPECT_EQ(write(), ERROR_SUCCESS);
    EXPECT_EQ(stored(), (StoredValue{REG_SZ, {"after", 6}}));
}

TEST(ScratchMachine, HasFoldersAsInstallationsHave)
{
    const ScratchMachine machine;
    const std::string folder = machine.Folder("Program Files");
    EXPECT_TRUE(is_directory(machine.Root() / "Program Files"));
    EXPECT_TRUE(is_directory(machine.Root() / "ProgramData"));
    EXPECT_TRUE(is_directory(machine.Root() / "LocalAppData"));
    EXPECT_TRUE(folder.ends_with("Program Files\\")) << folder;
}
