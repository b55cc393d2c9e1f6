#include <Platform/Win32.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "registry/RegistryKey.h"
#include "support/KnownDifferences.h"
#include "support/ScratchMachine.h"

// What Windows answers, on every system. scripts/transcripts compares random calls: codes, rights, deleted keys.

namespace
{
using Key = Quenlor::Fraxo::SharedUtilities::Native::RegistryKey; // closes itself
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAreArray;
using namespace std::string_view_literals;

constexpr char Contract[] = "Contract";
constexpr char Product[] = R"(FraxoPro\Release)";
constexpr char ProductClass[] = R"(Software\Classes\FraxoPro\Release)";

LSTATUS Open(HKEY parent, const char* subKey, Key& opened, REGSAM access = KEY_READ | KEY_WRITE)
{
    HKEY key = nullptr;
    const LSTATUS status = ::RegOpenKeyExA(parent, subKey, 0, access, &key);
    opened.reset(key);
    return status;
}

LSTATUS Query(HKEY key, const char* name, char* data = nullptr, DWORD* size = nullptr, DWORD* type = nullptr)
{
    return ::RegQueryValueExA(key, name, nullptr, type, reinterpret_cast<BYTE*>(data), size);
}

/// The names that RegEnumKeyExA or RegEnumValueA lists.
std::vector<std::string> Names(auto list, HKEY key)
{
    std::vector<std::string> names;
    char name[64];
    DWORD size = sizeof name;
    while (list(key, static_cast<DWORD>(names.size()), name, &size, nullptr, nullptr, nullptr, nullptr) == 0)
        names.emplace_back(name, std::exchange(size, DWORD{sizeof name}));
    return names;
}

LSTATUS First(auto list, HKEY key)
{
    char name[16];
    DWORD size = sizeof name;
    return list(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr);
}

std::string Text(const ScratchMachine& machine, HKEY root, const char* subKey, const char* name)
{
    const auto value = machine.ReadData(root, subKey, name);
    return value ? value->bytes.c_str() : "none";
}

TEST(RegistryFunctions, WantAHandleThatIsOpen)
{
    const ScratchMachine machine;
    machine.WriteText(HKEY_CURRENT_USER, Contract, "Text", "abc");
    Key key, same, unused;
    ASSERT_EQ(Open(HKEY_CURRENT_USER, Contract, key), ERROR_SUCCESS);
    ASSERT_EQ(Open(HKEY_CURRENT_USER, Contract, same), ERROR_SUCCESS);
    const HKEY closed = key.release();
    EXPECT_EQ(::RegCloseKey(closed), ERROR_SUCCESS);
    for (const HKEY bad : {HKEY{}, closed, reinterpret_cast<HKEY>(std::uintptr_t{0x7BADBAD0})})
    {
        EXPECT_EQ(::RegCloseKey(bad), ERROR_INVALID_HANDLE);
        EXPECT_EQ(Query(bad, "Text"), ERROR_INVALID_HANDLE);
        EXPECT_EQ(Open(bad, "Child", unused), ERROR_INVALID_HANDLE);
    }
    EXPECT_EQ(Query(same.get(), "Text"), ERROR_SUCCESS);
}

TEST(RegistryFunctions, WantARightAndAKeyThatIsThere)
{
    struct Operation
    {
        REGSAM needed;
        LSTATUS (*call)(HKEY key);
    };
    constexpr Operation operations[] = {
        {KEY_QUERY_VALUE, [](HKEY key) { return Query(key, "Text"); }},
        {KEY_QUERY_VALUE, [](HKEY key) { return First(::RegEnumValueA, key); }},
        {KEY_ENUMERATE_SUB_KEYS, [](HKEY key) { return First(::RegEnumKeyExA, key); }},
        {KEY_SET_VALUE, [](HKEY key) { return ::RegSetValueExA(key, "Text", 0, REG_SZ, nullptr, 0); }},
        {KEY_SET_VALUE, [](HKEY key) { return ::RegDeleteValueA(key, "Text"); }},
    };
    const ScratchMachine machine;
    const auto create = [&] { machine.WriteText(HKEY_CURRENT_USER, R"(Contract\Child)", "", ""); };
    create();
    Key all;
    ASSERT_EQ(Open(HKEY_CURRENT_USER, Contract, all, KEY_ALL_ACCESS), ERROR_SUCCESS);
    for (const REGSAM access : {KEY_QUERY_VALUE, KEY_SET_VALUE, KEY_ENUMERATE_SUB_KEYS})
    {
        Key key;
        ASSERT_EQ(Open(HKEY_CURRENT_USER, Contract, key, access), ERROR_SUCCESS);
        for (const auto& [needed, call] : operations)
        {
            machine.WriteText(HKEY_CURRENT_USER, Contract, "Text", "x");
            EXPECT_EQ(call(key.get()), access == needed ? ERROR_SUCCESS : ERROR_ACCESS_DENIED);
        }
    }
    EXPECT_EQ(::RegDeleteTreeA(HKEY_CURRENT_USER, Contract), ERROR_SUCCESS);
    for (const bool isThereAgain : {false, true})
    {
        if (isThereAgain)
            create();
        for (const Operation& operation : operations)
            EXPECT_EQ(operation.call(all.get()), ERROR_KEY_DELETED) << isThereAgain;
    }
}

TEST(RegistryFunctions, TakeAlmostAnyName)
{
    const ScratchMachine machine;
    // Neighbours of letters that a careless comparison takes for one another, and what a file format could trip over.
    std::vector<std::string> names = {"a[", "a{", "a/b", "a]b", "trailing  ", "a\tb", "Gr\u00F6\u00DFe", "I", "\u0131"};
    for (const std::string& name : names)
        machine.WriteText(HKEY_CURRENT_USER, std::string{R"(Contract\)"} + name, name.c_str(), name);
    for (const std::string& name : names)
    {
        machine.WriteText(HKEY_CURRENT_USER, Contract, name.c_str(), name);
        EXPECT_EQ(Text(machine, HKEY_CURRENT_USER, (std::string{R"(CONTRACT\)"} + name).c_str(), name.c_str()), name);
    }
    Key key;
    ASSERT_EQ(Open(HKEY_CURRENT_USER, Contract, key), ERROR_SUCCESS);
    EXPECT_THAT(Names(::RegEnumKeyExA, key.get()), UnorderedElementsAreArray(names));
    for (const char* const name : {R"(back\slash)", ""}) // not a level, and the default value
    {
        machine.WriteText(HKEY_CURRENT_USER, Contract, name, "x");
        names.emplace_back(name);
    }
    EXPECT_THAT(Names(::RegEnumValueA, key.get()), UnorderedElementsAreArray(names));
    EXPECT_EQ(Query(key.get(), nullptr), ERROR_SUCCESS);
}

TEST(RegistryFunctions, FillTheBufferAndNoMore)
{
    const struct
    {
        DWORD type;
        std::string_view stored;
        DWORD capacity;
        LSTATUS status;
        std::string_view buffer; // afterwards; '#' is untouched
    } rows[] = {
        {REG_SZ, "abc\0"sv, 3, ERROR_MORE_DATA, "######"},     {REG_SZ, "abc", 3, ERROR_SUCCESS, "abc###"},
        {REG_EXPAND_SZ, "abc", 5, ERROR_SUCCESS, "abc\0##"sv}, // text without a NUL gets one where there is room
        {REG_BINARY, "abc", 5, ERROR_SUCCESS, "abc###"},       {REG_SZ, "", 5, ERROR_SUCCESS, "######"},
    };
    const ScratchMachine machine;
    for (const auto& [stored, bytes, capacity, status, expected] : rows)
    {
        machine.WriteData(HKEY_CURRENT_USER, Contract, "Value", stored, bytes);
        Key key;
        ASSERT_EQ(Open(HKEY_CURRENT_USER, Contract, key), ERROR_SUCCESS);
        std::string buffer = "######";
        DWORD type = 99, size = capacity, needed = 99;
        EXPECT_EQ(Query(key.get(), "Value", buffer.data(), &size, &type), status);
        EXPECT_EQ(Query(key.get(), "Value", nullptr, &needed), ERROR_SUCCESS);
        EXPECT_THAT((std::vector{type, size, needed}), ElementsAre(stored, bytes.length(), bytes.length()));
        EXPECT_EQ(buffer, expected);
    }
}

// HKEY_CLASSES_ROOT shows the classes of the user and those of the machine as one tree.

TEST(ClassesRoot, NewKeysAreTheMachines)
{
    const ScratchMachine machine{ScratchMachine::ClassesRoot::Merged};
    machine.WriteText(HKEY_LOCAL_MACHINE, ProductClass, "Root", "machine");
    EXPECT_EQ(Text(machine, HKEY_CLASSES_ROOT, R"(\fraxopro\Release\)", "Root"),
              "machine"); // one is tolerated in front
    machine.WriteText(HKEY_CLASSES_ROOT, Product, "Root", "new");
    machine.WriteText(HKEY_CLASSES_ROOT, R"(FraxoPro\Next)", "", "new");
    EXPECT_EQ(Text(machine, HKEY_LOCAL_MACHINE, ProductClass, "Root"), "new");
    EXPECT_TRUE(machine.HasKey(HKEY_LOCAL_MACHINE, R"(Software\Classes\FraxoPro\Next)"));
    EXPECT_FALSE(machine.HasKey(HKEY_CURRENT_USER, R"(Software\Classes\FraxoPro)"));
}

TEST(ClassesRoot, PrefersTheUsersItems)
{
    if (const char* const answer = KnownDifference())
        GTEST_SKIP() << answer;
    const ScratchMachine machine{ScratchMachine::ClassesRoot::Merged};
    const auto write = [&](HKEY root, const char* name, std::initializer_list<const char*> subKeys)
    {
        machine.WriteText(root, ProductClass, name, "old");
        for (const char* const subKey : subKeys)
            machine.WriteText(root, std::string{ProductClass} + '\\' + subKey, "", "");
    };
    write(HKEY_LOCAL_MACHINE, "Root", {"A", "Z"});
    Key first, later;
    ASSERT_EQ(Open(HKEY_CLASSES_ROOT, Product, first), ERROR_SUCCESS); // knows nothing of the user's copy
    write(HKEY_CURRENT_USER, "ROOT", {"B", "z"});
    write(HKEY_LOCAL_MACHINE, "Another", {});
    ASSERT_EQ(Open(HKEY_CLASSES_ROOT, Product, later), ERROR_SUCCESS);
    for (const HKEY key : {first.get(), later.get()}) // each call decides, not the handle
    {
        EXPECT_THAT(Names(::RegEnumKeyExA, key), ElementsAre("B", "z", "A"));
        EXPECT_THAT(Names(::RegEnumValueA, key), ElementsAre("ROOT", "Another"));
        EXPECT_EQ(Query(key, "Another"), ERROR_SUCCESS);
    }
    EXPECT_EQ(::RegSetValueExA(first.get(), "Root", 0, REG_SZ, reinterpret_cast<const BYTE*>("new"), 4), ERROR_SUCCESS);
    EXPECT_EQ(Text(machine, HKEY_CLASSES_ROOT, Product, "Root"), "new");
    EXPECT_EQ(Text(machine, HKEY_CURRENT_USER, ProductClass, "Root"), "new");
    EXPECT_EQ(Text(machine, HKEY_LOCAL_MACHINE, ProductClass, "Root"), "old");
}
} // namespace
