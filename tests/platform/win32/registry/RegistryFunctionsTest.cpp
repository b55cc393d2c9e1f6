#include <Platform/Win32.h>

#include <array>
#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include "registry/RegistryKey.h"
#include "support/KnownDifferences.h"
#include "support/ScratchMachine.h"

// What Windows answers. It holds for every system, except where KnownDifference says otherwise.

namespace
{
using Key = Quenlor::Fraxo::SharedUtilities::Native::RegistryKey; // closes itself
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAreArray;
using namespace std::string_view_literals;

const HKEY Bogus = reinterpret_cast<HKEY>(std::uintptr_t{0x7BADBAD0});

struct Opened
{
    LSTATUS status;
    Key key;
    DWORD disposition = 0;
};

Opened Open(HKEY parent, const char* subKey, REGSAM access = KEY_READ)
{
    HKEY key = nullptr;
    const LSTATUS status = ::RegOpenKeyExA(parent, subKey, 0, access, &key);
    return {status, Key{key}};
}

Opened Create(HKEY parent, const char* subKey)
{
    HKEY key = nullptr;
    DWORD disposition = 0;
    const LSTATUS status =
        ::RegCreateKeyExA(parent, subKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, &disposition);
    return {status, Key{key}, disposition};
}

LSTATUS Set(HKEY key, const char* name, DWORD type, const char* bytes, std::size_t size)
{
    return ::RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(bytes), static_cast<DWORD>(size));
}

LSTATUS SetText(HKEY key, const char* name, const char* text)
{
    return Set(key, name, REG_SZ, text, std::string_view{text}.length() + 1);
}

LSTATUS Query(HKEY key, const char* name, char* data = nullptr, DWORD* size = nullptr, DWORD* type = nullptr)
{
    return ::RegQueryValueExA(key, name, nullptr, type, reinterpret_cast<BYTE*>(data), size);
}

/// The text of a value, or why there is none.
std::string Text(HKEY key, const char* name)
{
    char buffer[64] = "";
    DWORD size = sizeof buffer;
    const LSTATUS status = Query(key, name, buffer, &size);
    return status == ERROR_SUCCESS ? buffer : "error " + std::to_string(status);
}

const auto EnumKey = ::RegEnumKeyExA;
const auto EnumValue = ::RegEnumValueA;

LSTATUS Enum(auto list, HKEY key, DWORD index, DWORD size)
{
    char name[16];
    return list(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
}

/// The names that one of the two functions above lists.
std::vector<std::string> Names(auto list, HKEY key)
{
    std::vector<std::string> names;
    char name[64];
    DWORD size = sizeof name;
    while (list(key, static_cast<DWORD>(names.size()), name, &size, nullptr, nullptr, nullptr, nullptr) == 0)
        names.emplace_back(name, std::exchange(size, DWORD{sizeof name}));
    return names;
}

class RegistryTest : public ::testing::Test
{
protected:
    explicit RegistryTest(ScratchMachine::ClassesRoot classes) : m_machine{classes} {}

    void SetUp() override
    {
        if (const char* const answer = KnownDifference())
            GTEST_SKIP() << answer;
    }

    ScratchMachine m_machine;
};

/// A key with the value "Text" and the sub-key Child\Grandchild.
class RegistryFunctions : public RegistryTest
{
protected:
    RegistryFunctions() : RegistryTest{ScratchMachine::ClassesRoot::NotUsed}
    {
        EXPECT_EQ(Create(m_key, R"(Child\Grandchild)").status, ERROR_SUCCESS);
        EXPECT_EQ(SetText(m_key, "Text", "abc"), ERROR_SUCCESS);
    }

    const Key m_owner = Create(HKEY_CURRENT_USER, "Contract").key;
    const HKEY m_key = m_owner.get();
};

// clang-format off
TEST_F(RegistryFunctions, ReturnCodes)
{
    const struct
    {
        const char* name;
        LSTATUS expected;
        LSTATUS (*call)(HKEY key); // of the fixture
    } rows[] = {
        {"open: no result", 87, [](HKEY key) { return ::RegOpenKeyExA(key, "Child", 0, KEY_READ, nullptr); }},
        {"open: bogus parent", 6, [](HKEY) { return Open(Bogus, "Child").status; }},
        {"open: backslash before", 161, [](HKEY) { return Open(HKEY_CURRENT_USER, R"(\Contract)").status; }},
        {"open: backslashes after", 0, [](HKEY key) { return Open(key, R"(cHILD\GRANDchild\\)").status; }},
        {"create: no result", 1010, [](HKEY key) {
            return ::RegCreateKeyExA(key, "Child", 0, nullptr, 0, KEY_READ, nullptr, nullptr, nullptr); }},
        {"create: bogus parent", 6, [](HKEY) { return Create(Bogus, "Child").status; }},
        {"create: longest name", 0, [](HKEY key) { return Create(key, std::string(255, 'n').c_str()).status; }},
        {"create: too long a name", 87, [](HKEY key) { return Create(key, std::string(256, 'n').c_str()).status; }},
        {"query: data, but no size", 87, [](HKEY key) { char data[8]; return Query(key, "TEXT", data); }},
        {"enum: no room for the NUL", 234, [](HKEY key) { return Enum(EnumKey, key, 0, sizeof "Child" - 1); }},
        {"enum: no more keys", 259, [](HKEY key) { return Enum(EnumKey, key, 2, 16); }},
        {"enum: values of bogus key", 6, [](HKEY) { return Enum(EnumValue, Bogus, 0, 16); }},
        {"set: null key", 6, [](HKEY) { return SetText(nullptr, "Text", "x"); }},
        {"set: size, but no data", 998, [](HKEY key) { return Set(key, "Text", REG_BINARY, nullptr, 1); }},
        {"set: longest name", 0, [](HKEY key) { return SetText(key, std::string(16383, 'n').c_str(), "x"); }},
        {"set: too long a name", 87, [](HKEY key) { return SetText(key, std::string(16384, 'n').c_str(), "x"); }},
        {"delete: value", 0, [](HKEY key) { return ::RegDeleteValueA(key, "TEXT"); }},
        {"delete: missing value", 2, [](HKEY key) { return ::RegDeleteValueA(key, "Text"); }},
        {"delete: missing tree", 2, [](HKEY key) { return ::RegDeleteTreeA(key, "Absent"); }},
        {"close: null", 6, [](HKEY) { return ::RegCloseKey(nullptr); }},
        {"close: predefined", 0, [](HKEY) { return ::RegCloseKey(HKEY_CURRENT_USER); }},
    };
    for (const auto& [name, expected, call] : rows)
    {
        if (const char* const answer = KnownDifference(name))
            std::cout << "Left out: " << name << " (" << answer << ")\n";
        else
            EXPECT_EQ(call(m_key), expected) << name;
    }
}
// clang-format on

TEST_F(RegistryFunctions, OpenSetsTheResultToNull)
{
    HKEY result = Bogus;
    EXPECT_EQ(::RegOpenKeyExA(m_key, "Absent", 0, KEY_READ, &result), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(result, nullptr);

    result = Bogus;
    EXPECT_EQ(::RegOpenKeyExA(nullptr, "Absent", 0, KEY_READ, &result), ERROR_INVALID_HANDLE);
    EXPECT_EQ(result, Bogus);
}

TEST_F(RegistryFunctions, AnEmptyPathMeansTheKeyItself)
{
    const Key reader = Open(HKEY_CURRENT_USER, "Contract").key;
    for (const char* const path : {static_cast<const char*>(nullptr), ""})
    {
        EXPECT_EQ(Open(HKEY_CURRENT_USER, path).key.release(), HKEY_CURRENT_USER);
        EXPECT_EQ(SetText(Open(reader.get(), path, KEY_WRITE).key.get(), "New", "x"), ERROR_SUCCESS);
    }
}

TEST_F(RegistryFunctions, CloseEndsOneHandle)
{
    const HKEY key = Open(HKEY_CURRENT_USER, "Contract").key.release();
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(::RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(Query(key, "Text"), ERROR_INVALID_HANDLE);
    EXPECT_EQ(Query(m_key, "Text"), ERROR_SUCCESS);
}

TEST_F(RegistryFunctions, OnlyTheLowHalfOfARootMatters)
{
    for (const std::uintptr_t high : {0ULL, 0xFFFFFFFF00000000ULL, 0x1234567800000000ULL})
        EXPECT_EQ(Open(reinterpret_cast<HKEY>(high | 0x80000001), "Contract").status, ERROR_SUCCESS) << high;
}

TEST_F(RegistryFunctions, CreateMakesMissingLevels)
{
    const Key reader = Open(HKEY_CURRENT_USER, "Contract").key; // its rights do not limit what is created below it
    EXPECT_EQ(Create(reader.get(), R"(A\B\C\\)").disposition, REG_CREATED_NEW_KEY);
    EXPECT_EQ(Create(reader.get(), R"(a\b\c)").disposition, REG_OPENED_EXISTING_KEY);
    EXPECT_THAT(Names(EnumKey, m_key), ElementsAre("A", "Child")); // spelled as created
}

struct Operation
{
    const char* name;
    REGSAM needed;
    LSTATUS (*call)(HKEY key);
};

constexpr Operation Operations[] = {
    {"query", KEY_QUERY_VALUE, [](HKEY key) { return Query(key, "Text"); }},
    {"list values", KEY_QUERY_VALUE, [](HKEY key) { return Enum(EnumValue, key, 0, 16); }},
    {"list keys", KEY_ENUMERATE_SUB_KEYS, [](HKEY key) { return Enum(EnumKey, key, 0, 16); }},
    {"set", KEY_SET_VALUE, [](HKEY key) { return SetText(key, "New", "x"); }},
    {"delete", KEY_SET_VALUE, [](HKEY key) { return ::RegDeleteValueA(key, "New"); }},
};

TEST_F(RegistryFunctions, NeedTheRightOfTheHandle)
{
    for (const REGSAM access : {REGSAM{KEY_QUERY_VALUE | KEY_WOW64_64KEY}, REGSAM{KEY_SET_VALUE | KEY_WOW64_32KEY},
                                REGSAM{KEY_ENUMERATE_SUB_KEYS}})
    {
        const Key key = Open(HKEY_CURRENT_USER, "Contract", access).key;
        for (const auto& [name, needed, call] : Operations)
        {
            ASSERT_EQ(SetText(m_key, "New", "x"), ERROR_SUCCESS);
            EXPECT_EQ(call(key.get()), access & needed ? ERROR_SUCCESS : ERROR_ACCESS_DENIED) << name << access;
        }
    }
}

TEST_F(RegistryFunctions, KnowThatAKeyWasDeleted)
{
    const Key child = Open(m_key, "Child", KEY_ALL_ACCESS).key;
    const Key unused = Open(m_key, "Child", KEY_ALL_ACCESS).key; // until there is a new key of that name
    const Key grandchild = Open(m_key, R"(Child\Grandchild)", KEY_ALL_ACCESS).key;
    const auto expectDeleted = [](const Key& key)
    {
        for (const Operation& operation : Operations)
            EXPECT_EQ(operation.call(key.get()), ERROR_KEY_DELETED) << operation.name;
        EXPECT_EQ(Open(key.get(), "Grandchild").status, ERROR_KEY_DELETED);
        EXPECT_EQ(Create(key.get(), "New").status, ERROR_KEY_DELETED);
        EXPECT_EQ(::RegDeleteTreeA(key.get(), nullptr), ERROR_KEY_DELETED);
    };
    ASSERT_EQ(::RegDeleteTreeA(m_key, "CHILD"), ERROR_SUCCESS);
    expectDeleted(child);
    expectDeleted(grandchild);
    ASSERT_EQ(Create(m_key, R"(Child\Grandchild)").status, ERROR_SUCCESS);
    expectDeleted(child);
    expectDeleted(unused);
}

TEST_F(RegistryFunctions, DeleteTreeTakesTheKeyOrItsContent)
{
    ASSERT_EQ(Create(m_key, "Other").status, ERROR_SUCCESS);
    EXPECT_EQ(::RegDeleteTreeA(m_key, "Child"), ERROR_SUCCESS);
    EXPECT_THAT(Names(EnumKey, m_key), ElementsAre("Other"));

    EXPECT_EQ(::RegDeleteTreeA(m_key, nullptr), ERROR_SUCCESS);
    EXPECT_THAT(Names(EnumKey, m_key), ElementsAre());
    EXPECT_THAT(Names(EnumValue, m_key), ElementsAre());
    EXPECT_EQ(Open(HKEY_CURRENT_USER, "Contract").status, ERROR_SUCCESS);
}

TEST_F(RegistryFunctions, NamesMayHoldAlmostAnything)
{
    // Neighbours of letters that a careless comparison takes for one another, and what a file format could trip over.
    const std::vector<std::string> names = {
        "a[",    "a{",  "a@", "a`",   "a/b", "\"quoted\"",      "a]b", ";a",    "trailing  ",
        " lead", "a=b", "@",  "a\tb", "...", "Gr\u00F6\u00DFe", "I",   "\u0131"};
    const Key key = Create(m_key, "Names").key;
    for (const std::string& name : names)
    {
        EXPECT_EQ(Create(key.get(), name.c_str()).status, ERROR_SUCCESS) << name;
        EXPECT_EQ(SetText(key.get(), name.c_str(), name.c_str()), ERROR_SUCCESS) << name;
        EXPECT_EQ(Text(key.get(), name.c_str()), name);
    }
    EXPECT_THAT(Names(EnumKey, key.get()), UnorderedElementsAreArray(names));
    EXPECT_THAT(Names(EnumValue, key.get()), UnorderedElementsAreArray(names));
    EXPECT_EQ(SetText(m_key, R"(back\slash)", "x"), ERROR_SUCCESS); // not a level: only key names have those
    EXPECT_EQ(SetText(m_key, nullptr, "default"), ERROR_SUCCESS);
    EXPECT_THAT(Names(EnumValue, m_key), UnorderedElementsAreArray({"", R"(back\slash)", "Text"}));
    EXPECT_EQ(Text(m_key, ""), "default");
    EXPECT_EQ(::RegDeleteValueA(m_key, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(::RegDeleteValueA(m_key, ""), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryFunctions, QueryFillsTheBufferAndNoMore)
{
    const struct
    {
        DWORD type;
        std::string_view stored;
        DWORD capacity;
        LSTATUS status;
        std::string_view buffer; // afterwards; '#' is untouched
    } rows[] = {
        {REG_SZ, "abc\0"sv, 6, 0, "abc\0####"sv},
        {REG_SZ, "abc\0"sv, 3, 234, "########"},
        {REG_SZ, "abc", 6, 0, "abc\0####"sv}, // text without a NUL gets one where there is room
        {REG_SZ, "abc", 3, 0, "abc#####"},
        {REG_SZ, "", 6, 0, "########"},
        {REG_EXPAND_SZ, "%A%", 8, 0, "%A%\0####"sv},
        {REG_QWORD, "\1\2\3\4\5\6\7\x08", 4, 234, "########"},
        {77, "abc", 4, 0, "abc#####"},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(::testing::PrintToString(row.stored) + " into " + std::to_string(row.capacity));
        m_machine.WriteData(HKEY_CURRENT_USER, "Contract", "Value", row.type, row.stored);
        std::string buffer = "########";
        DWORD type = 99, size = row.capacity;
        EXPECT_EQ(Query(m_key, "Value", buffer.data(), &size, &type), row.status);
        EXPECT_EQ(type, row.type);
        EXPECT_EQ(size, row.stored.length());
        EXPECT_EQ(buffer, row.buffer);

        size = 99;
        EXPECT_EQ(Query(m_key, "Value", nullptr, &size), ERROR_SUCCESS);
        EXPECT_EQ(size, row.stored.length());
    }
}

TEST_F(RegistryFunctions, QueryTreatsItsSizeWithCare)
{
    char data[4] = {};
    DWORD size = sizeof data;
    EXPECT_EQ(Query(m_key, "Absent", data, &size), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(size, sizeof data);
    EXPECT_EQ(Query(m_key, "Text", data, &size, &size), ERROR_SUCCESS) << "read before the type is written there";
    EXPECT_THAT(data, ElementsAre('a', 'b', 'c', 0));
    size = 99;
    EXPECT_EQ(Query(m_key, "Absent", nullptr, &size), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(size, 0U);
}

TEST_F(RegistryFunctions, SetStoresTheNulThatACountLeavesOut)
{
    const struct
    {
        DWORD type;
        std::string_view memory;
        std::size_t count;
        std::size_t stored;
    } rows[] = {
        {REG_SZ, "1000\0"sv, 4, 5},       {REG_SZ, "1000."sv, 4, 4},      {REG_SZ, "10\0\0"sv, 3, 3},
        {REG_SZ, "\0"sv, 0, 0},           {REG_SZ, "1\0x\0"sv, 3, 4},     {REG_EXPAND_SZ, "1000\0"sv, 4, 5},
        {REG_MULTI_SZ, "a\0b\0"sv, 3, 4}, {REG_BINARY, "1000\0"sv, 4, 4}, {REG_EXPAND_SZ, {}, 0, 0},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(Set(m_key, "Text", row.type, row.memory.data(), row.count), ERROR_SUCCESS);
        EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, "Contract", "Text"),
                  (StoredValue{row.type, std::string{row.memory.substr(0, row.stored)}}));
    }
}

TEST_F(RegistryFunctions, EnumValueGivesNameTypeAndData)
{
    char name[8] = "#######", data[8] = "#######";
    DWORD nameSize = 5, type = 99, size = 4;
    EXPECT_EQ(::RegEnumValueA(m_key, 0, name, &nameSize, nullptr, &type, reinterpret_cast<BYTE*>(data), &size),
              ERROR_SUCCESS);
    EXPECT_EQ(std::string(name, 7), "Text\0##"sv);
    EXPECT_EQ(std::string(data, 7), "abc\0###"sv);
    EXPECT_THAT((std::array{nameSize, type, size}), ElementsAre(4U, REG_SZ, 4U)); // only the data's NUL is counted
}

constexpr char Product[] = R"(FraxoPro\Release)";
constexpr char ProductClass[] = R"(Software\Classes\FraxoPro\Release)";

/// HKEY_CLASSES_ROOT shows the classes of the user and those of the machine as one tree. It decides at each call.
class ClassesRoot : public RegistryTest
{
protected:
    ClassesRoot() : RegistryTest{ScratchMachine::ClassesRoot::Merged}
    {
        EXPECT_EQ(SetText(m_machines.get(), "Root", "machine"), ERROR_SUCCESS);
    }

    /// Only now, so that every case starts with an open handle that knows nothing of the user's copy.
    void CreateTheUsersCopy()
    {
        m_users = Create(HKEY_CURRENT_USER, ProductClass).key;
        EXPECT_EQ(SetText(m_users.get(), "Root", "user"), ERROR_SUCCESS);
    }

    Key m_users;
    const Key m_machines = Create(HKEY_LOCAL_MACHINE, ProductClass).key;
    const Key m_owner = Open(HKEY_CLASSES_ROOT, Product, KEY_ALL_ACCESS).key;
    const HKEY m_shown = m_owner.get();
};

TEST_F(ClassesRoot, NewKeysAreTheMachines)
{
    EXPECT_EQ(Text(m_shown, "Root"), "machine");
    EXPECT_EQ(Open(HKEY_CLASSES_ROOT, R"(\fraxopro\Release\)").status, ERROR_SUCCESS); // only here one may be in front
    EXPECT_EQ(SetText(m_shown, "Root", "new"), ERROR_SUCCESS);
    EXPECT_EQ(Create(HKEY_CLASSES_ROOT, R"(FraxoPro\Next)").status, ERROR_SUCCESS);
    EXPECT_EQ(Create(m_shown, "Language").status, ERROR_SUCCESS);

    EXPECT_EQ(Text(m_machines.get(), "Root"), "new");
    EXPECT_EQ(Open(HKEY_LOCAL_MACHINE, R"(Software\Classes\FraxoPro\Next)").status, ERROR_SUCCESS);
    EXPECT_EQ(Open(m_machines.get(), "Language").status, ERROR_SUCCESS);
    EXPECT_EQ(Open(HKEY_CURRENT_USER, R"(Software\Classes\FraxoPro)").status, ERROR_FILE_NOT_FOUND);
}

TEST_F(ClassesRoot, ShowsTheUsersItemsThenTheMachines)
{
    CreateTheUsersCopy();
    EXPECT_EQ(SetText(m_machines.get(), "Another", "machine"), ERROR_SUCCESS);
    for (const char* const name : {"B", "z"})
        EXPECT_EQ(Create(m_users.get(), name).status, ERROR_SUCCESS);
    for (const char* const name : {"A", "Z"})
        EXPECT_EQ(Create(m_machines.get(), name).status, ERROR_SUCCESS);
    const Key later = Open(HKEY_CLASSES_ROOT, Product).key; // opened when both are there
    for (const HKEY key : {m_shown, later.get()})
    {
        EXPECT_EQ(Text(key, "Root"), "user");
        EXPECT_EQ(Text(key, "Another"), "machine");
        EXPECT_EQ(Open(key, "A").status, ERROR_SUCCESS);
        EXPECT_EQ(Open(key, "B").status, ERROR_SUCCESS);
        EXPECT_THAT(Names(EnumKey, key), ElementsAre("B", "z", "A"));
        EXPECT_THAT(Names(EnumValue, key), ElementsAre("Root", "Another"));
    }
}

TEST_F(ClassesRoot, ChangesTheUsersCopyIfThereIsOne)
{
    CreateTheUsersCopy();
    EXPECT_EQ(SetText(m_shown, "Root", "new"), ERROR_SUCCESS);
    EXPECT_EQ(Text(m_users.get(), "Root"), "new");
    EXPECT_EQ(Text(m_machines.get(), "Root"), "machine");

    EXPECT_EQ(::RegDeleteValueA(m_shown, "Root"), ERROR_SUCCESS);
    EXPECT_EQ(Text(m_shown, "Root"), "machine");
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
    {
        EXPECT_EQ(Open(root, ProductClass).status, ERROR_SUCCESS);
        EXPECT_EQ(::RegDeleteTreeA(HKEY_CLASSES_ROOT, "FraxoPro"), ERROR_SUCCESS);
        EXPECT_EQ(Open(root, ProductClass).status, ERROR_FILE_NOT_FOUND);
    }
}
} // namespace
