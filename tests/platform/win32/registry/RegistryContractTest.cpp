#include "platform/win32/registry/RegistryContract.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <iostream>

#include <gmock/gmock.h>

namespace
{
using ::testing::ElementsAre;
using namespace std::string_view_literals;

// Files, other processes and compiled programs hold these numbers.
static_assert(KEY_READ == 0x20019 && KEY_WRITE == 0x20006 && KEY_ALL_ACCESS == 0xF003F);
static_assert(KEY_QUERY_VALUE == 1 && KEY_SET_VALUE == 2 && KEY_CREATE_SUB_KEY == 4 && KEY_ENUMERATE_SUB_KEYS == 8);
static_assert(KEY_WOW64_64KEY == 0x100 && KEY_WOW64_32KEY == 0x200);
static_assert(REG_NONE == 0 && REG_SZ == 1 && REG_EXPAND_SZ == 2 && REG_BINARY == 3 && REG_DWORD == 4);
static_assert(REG_MULTI_SZ == 7 && REG_QWORD == 11);
static_assert(REG_CREATED_NEW_KEY == 1 && REG_OPENED_EXISTING_KEY == 2);
static_assert(ERROR_ACCESS_DENIED == 5 && ERROR_KEY_DELETED == 1018); // the tables below have the others

const HKEY Bogus = reinterpret_cast<HKEY>(std::uintptr_t{0x7BADBAD0});

struct StatusRow
{
    const char* name;
    LSTATUS expected;
    LSTATUS (*call)(HKEY key); // gets the key of RegistryFunctions
};

/// A key with the value "Text" and the sub-key Child\Grandchild.
class RegistryFunctions : public RegistryContractTest
{
protected:
    RegistryFunctions()
    {
        EXPECT_EQ(Create(HKEY_CURRENT_USER, "Contract", KEY_ALL_ACCESS, m_owner), ERROR_SUCCESS);
        m_key = m_owner.get();
        EXPECT_EQ(CreateStatus(m_key, R"(Child\Grandchild)"), ERROR_SUCCESS);
        EXPECT_EQ(SetText(m_key, "Text", "abc"), ERROR_SUCCESS);
    }

    void ExpectStatus(std::initializer_list<StatusRow> rows) const
    {
        for (const StatusRow& row : rows)
        {
            if (const char* const answer = KnownDifference(row.name))
                std::cout << "Left out: " << row.name << " (" << answer << ")\n";
            else
                EXPECT_EQ(row.call(m_key), row.expected) << row.name;
        }
    }

    /// Another handle to the same key, with these rights.
    Key WithAccess(REGSAM access) const
    {
        Key key;
        EXPECT_EQ(Open(HKEY_CURRENT_USER, "Contract", access, key), ERROR_SUCCESS);
        return key;
    }

    HKEY m_key = nullptr;

private:
    Key m_owner;
};

// ---- what each function returns -------------------------------------------------------------------------------------

LSTATUS Query(HKEY key, const char* name, BYTE* data = nullptr, DWORD* size = nullptr)
{
    return ::RegQueryValueExA(key, name, nullptr, nullptr, data, size);
}

LSTATUS Enum(auto list, HKEY key, DWORD index, DWORD size)
{
    char name[16];
    return list(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
}

// clang-format off
TEST_F(RegistryFunctions, Open)
{
    ExpectStatus({
        {"no result", 87, [](HKEY key) { return ::RegOpenKeyExA(key, "Child", 0, KEY_READ, nullptr); }},
        {"bogus parent", 6, [](HKEY) { return OpenStatus(Bogus, "Child"); }},
        {"backslash before", 161, [](HKEY) { return OpenStatus(HKEY_CURRENT_USER, R"(\Contract)"); }},
        {"backslashes behind, other letter case", 0, [](HKEY key) { return OpenStatus(key, R"(cHILD\GRANDchild\\)"); }},
    });
}

TEST_F(RegistryFunctions, Create)
{
    ExpectStatus({
        {"no result", 1010, [](HKEY key) {
            return ::RegCreateKeyExA(key, "Child", 0, nullptr, 0, KEY_READ, nullptr, nullptr, nullptr); }},
        {"bogus parent", 6, [](HKEY) { return CreateStatus(Bogus, "Child"); }},
        {"longest name", 0, [](HKEY key) { return CreateStatus(key, std::string(255, 'n').c_str()); }},
        {"too long a name", 87, [](HKEY key) { return CreateStatus(key, std::string(256, 'n').c_str()); }},
    });
}

TEST_F(RegistryFunctions, QueryEnumSetAndDelete)
{
    ExpectStatus({
        {"query: data, but no size", 87, [](HKEY key) { BYTE data[8]; return Query(key, "TEXT", data); }},
        {"enum: room for the NUL", 0, [](HKEY key) { return Enum(EnumKey, key, 0, sizeof "Child"); }},
        {"enum: no room for the NUL", 234, [](HKEY key) { return Enum(EnumKey, key, 0, sizeof "Child" - 1); }},
        {"enum: no more keys", 259, [](HKEY key) { return Enum(EnumKey, key, 1, 16); }},
        {"enum: values of bogus key", 6, [](HKEY) { return Enum(EnumValue, Bogus, 0, 16); }},
        {"set: null key", 6, [](HKEY) { return SetText(nullptr, "Text", "x"); }},
        {"set: size, but no data", 998, [](HKEY key) { return Set(key, "Text", REG_BINARY, nullptr, 1); }},
        {"set: longest name", 0, [](HKEY key) { return SetText(key, std::string(16383, 'n').c_str(), "x"); }},
        {"set: too long a name", 87, [](HKEY key) { return SetText(key, std::string(16384, 'n').c_str(), "x"); }},
        {"delete: value", 0, [](HKEY key) { return ::RegDeleteValueA(key, "TEXT"); }},
        {"delete: missing value", 2, [](HKEY key) { return ::RegDeleteValueA(key, "Text"); }},
        {"delete: missing tree", 2, [](HKEY key) { return ::RegDeleteTreeA(key, "Absent"); }},
    });
}
// clang-format on

// ---- keys and handles -----------------------------------------------------------------------------------------------

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
    const Key reader = WithAccess(KEY_READ);
    for (const char* const path : {static_cast<const char*>(nullptr), ""})
    {
        HKEY root = nullptr;
        EXPECT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_READ, &root), ERROR_SUCCESS);
        EXPECT_EQ(root, HKEY_CURRENT_USER);

        Key writer;
        ASSERT_EQ(Open(reader.get(), path, KEY_WRITE, writer), ERROR_SUCCESS);
        EXPECT_EQ(SetText(writer.get(), "New", "x"), ERROR_SUCCESS);
    }
}

TEST_F(RegistryFunctions, CloseTakesAHandleOnce)
{
    EXPECT_EQ(::RegCloseKey(nullptr), ERROR_INVALID_HANDLE);
    EXPECT_EQ(::RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
    EXPECT_EQ(OpenStatus(HKEY_CURRENT_USER, "Contract"), ERROR_SUCCESS);

    const Key other = WithAccess(KEY_READ);
    const HKEY key = WithAccess(KEY_READ).release();
    EXPECT_EQ(::RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(::RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(Query(key, "Text"), ERROR_INVALID_HANDLE);
    EXPECT_EQ(Query(other.get(), "Text"), ERROR_SUCCESS);
}

TEST_F(RegistryFunctions, OnlyTheLowHalfOfARootCounts)
{
    for (const std::uintptr_t high : {0ULL, 0xFFFFFFFF00000000ULL, 0x1234567800000000ULL})
        EXPECT_EQ(OpenStatus(reinterpret_cast<HKEY>(high | 0x80000001), "Contract"), ERROR_SUCCESS) << high;
}

TEST_F(RegistryFunctions, CreateMakesMissingLevels)
{
    const Key reader = WithAccess(KEY_READ); // what a handle may do does not limit what may be created below it
    Key key;
    DWORD disposition = 0;
    EXPECT_EQ(Create(reader.get(), R"(A\B\C\\)", KEY_READ, key, &disposition), ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
    EXPECT_EQ(Create(reader.get(), R"(a\b\c)", KEY_READ, key, &disposition), ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
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

TEST_F(RegistryFunctions, NeedTheRightThatTheHandleWasOpenedWith)
{
    for (const REGSAM access : {REGSAM{KEY_QUERY_VALUE}, REGSAM{KEY_SET_VALUE}, REGSAM{KEY_ENUMERATE_SUB_KEYS},
                                REGSAM{KEY_READ | KEY_WOW64_64KEY}, REGSAM{KEY_CREATE_SUB_KEY | KEY_WOW64_32KEY}})
    {
        const Key key = WithAccess(access);
        for (const Operation& operation : Operations)
        {
            ASSERT_EQ(SetText(m_key, "New", "x"), ERROR_SUCCESS);
            const LSTATUS expected = (access & operation.needed) ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
            EXPECT_EQ(operation.call(key.get()), expected) << operation.name << " with access 0x" << std::hex << access;
        }
    }
}

TEST_F(RegistryFunctions, KnowThatAKeyWasDeleted)
{
    Key child, grandchild, notUsedMeanwhile;
    ASSERT_EQ(Open(m_key, "Child", KEY_ALL_ACCESS, child), ERROR_SUCCESS);
    ASSERT_EQ(Open(m_key, "Child", KEY_ALL_ACCESS, notUsedMeanwhile), ERROR_SUCCESS);
    ASSERT_EQ(Open(m_key, R"(Child\Grandchild)", KEY_ALL_ACCESS, grandchild), ERROR_SUCCESS);
    const auto expectDeleted = [](HKEY key)
    {
        for (const Operation& operation : Operations)
            EXPECT_EQ(operation.call(key), ERROR_KEY_DELETED) << operation.name;
        EXPECT_EQ(OpenStatus(key, "Grandchild"), ERROR_KEY_DELETED);
        EXPECT_EQ(CreateStatus(key, "New"), ERROR_KEY_DELETED);
        EXPECT_EQ(::RegDeleteTreeA(key, nullptr), ERROR_KEY_DELETED);
    };
    ASSERT_EQ(::RegDeleteTreeA(m_key, "CHILD"), ERROR_SUCCESS);
    expectDeleted(child.get());
    expectDeleted(grandchild.get());
    ASSERT_EQ(CreateStatus(m_key, R"(Child\Grandchild)"), ERROR_SUCCESS); // a new key of that name is another key
    expectDeleted(child.get());
    expectDeleted(notUsedMeanwhile.get());
}

TEST_F(RegistryFunctions, DeleteTreeTakesTheKeyOrItsContent)
{
    ASSERT_EQ(CreateStatus(m_key, "Other"), ERROR_SUCCESS);
    EXPECT_EQ(::RegDeleteTreeA(m_key, "Child"), ERROR_SUCCESS);
    EXPECT_THAT(Names(EnumKey, m_key), ElementsAre("Other"));

    EXPECT_EQ(::RegDeleteTreeA(m_key, nullptr), ERROR_SUCCESS);
    EXPECT_THAT(Names(EnumKey, m_key), ElementsAre());
    EXPECT_THAT(Names(EnumValue, m_key), ElementsAre());
    EXPECT_EQ(OpenStatus(HKEY_CURRENT_USER, "Contract"), ERROR_SUCCESS);
}

// ---- names ----------------------------------------------------------------------------------------------------------

TEST_F(RegistryFunctions, NamesMayHoldAlmostAnything)
{
    // Neighbours of letters that a careless comparison takes for one another, and what a file format could trip over.
    const std::vector<std::string> names = {"a[",         "a{",  "a@",   "a`",         "a/b",
                                            "\"quoted\"", "a]b", ";a",   "trailing  ", " lead",
                                            "a=b",        "@",   "a\tb", "...",        "Gr\u00F6\u00DFe"};
    Key key;
    ASSERT_EQ(Create(m_key, "Names", KEY_ALL_ACCESS, key), ERROR_SUCCESS);
    for (const std::string& name : names)
    {
        EXPECT_EQ(CreateStatus(key.get(), name.c_str()), ERROR_SUCCESS) << name;
        EXPECT_EQ(SetText(key.get(), name.c_str(), name.c_str()), ERROR_SUCCESS) << name;
    }
    EXPECT_THAT(Names(EnumKey, key.get()), ::testing::UnorderedElementsAreArray(names));
    EXPECT_THAT(Names(EnumValue, key.get()), ::testing::UnorderedElementsAreArray(names));
    for (const std::string& name : names)
        EXPECT_EQ(Text(key.get(), name.c_str()), name);
    EXPECT_EQ(SetText(key.get(), R"(back\slash)", "x"), ERROR_SUCCESS); // no level: only key names have those
    EXPECT_EQ(Text(key.get(), R"(back\slash)"), "x");
}

TEST_F(RegistryFunctions, TheDefaultValueHasNoName)
{
    EXPECT_EQ(SetText(m_key, nullptr, "default"), ERROR_SUCCESS);
    EXPECT_EQ(Text(m_key, ""), "default");
    EXPECT_THAT(Names(EnumValue, m_key), ::testing::UnorderedElementsAre("", "Text"));
    EXPECT_EQ(::RegDeleteValueA(m_key, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(::RegDeleteValueA(m_key, ""), ERROR_FILE_NOT_FOUND);
}

// ---- values ---------------------------------------------------------------------------------------------------------

TEST_F(RegistryFunctions, QueryFillsTheBufferAndNoMore)
{
    struct Row
    {
        DWORD type;
        std::string_view stored;
        DWORD capacity;
        LSTATUS status;
        std::string_view buffer; // afterwards; '#' is untouched
    };
    const Row rows[] = {
        {REG_SZ, "abc\0"sv, 6, 0, "abc\0####"sv},
        {REG_SZ, "abc\0"sv, 3, 234, "########"},
        {REG_SZ, "abc", 6, 0, "abc\0####"sv}, // text without a NUL gets one where there is room
        {REG_SZ, "abc", 3, 0, "abc#####"},
        {REG_SZ, "", 6, 0, "########"},
        {REG_EXPAND_SZ, "%A%", 8, 0, "%A%\0####"sv},
        {REG_QWORD, "\1\2\3\4\5\6\7\x08", 4, 234, "########"},
        {77, "abc", 4, 0, "abc#####"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(::testing::PrintToString(row.stored) + " into " + std::to_string(row.capacity));
        m_machine.WriteData(HKEY_CURRENT_USER, "Contract", "Value", row.type, row.stored);
        std::string buffer = "########";
        DWORD type = 99, size = row.capacity;
        EXPECT_EQ(::RegQueryValueExA(m_key, "Value", nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &size),
                  row.status);
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
    BYTE data[4] = {};
    DWORD size = sizeof data;
    EXPECT_EQ(Query(m_key, "Absent", data, &size), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(size, sizeof data);
    // The size is read before the type is written to the same place.
    EXPECT_EQ(::RegQueryValueExA(m_key, "Text", nullptr, &size, data, &size), ERROR_SUCCESS);
    EXPECT_THAT(data, ElementsAre('a', 'b', 'c', 0));
    size = 99;
    EXPECT_EQ(Query(m_key, "Absent", nullptr, &size), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(size, 0U);
}

TEST_F(RegistryFunctions, SetStoresTheNulThatACountLeavesOut)
{
    struct Row
    {
        DWORD type;
        std::string_view memory;
        std::size_t count;
        std::size_t stored;
    };
    const Row rows[] = {
        {REG_SZ, "1000\0"sv, 4, 5},       {REG_SZ, "1000."sv, 4, 4},      {REG_SZ, "10\0\0"sv, 3, 3},
        {REG_SZ, "\0"sv, 0, 0},           {REG_SZ, "1\0x\0"sv, 3, 4},     {REG_EXPAND_SZ, "1000\0"sv, 4, 5},
        {REG_MULTI_SZ, "a\0b\0"sv, 3, 4}, {REG_BINARY, "1000\0"sv, 4, 4}, {REG_EXPAND_SZ, {}, 0, 0},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(Set(m_key, "Text", row.type, row.memory.data(), row.count), ERROR_SUCCESS);
        EXPECT_EQ(m_machine.ReadData(HKEY_CURRENT_USER, "Contract", "Text"),
                  (StoredValue{row.type, std::string{row.memory.substr(0, row.stored)}}));
    }
}

TEST_F(RegistryFunctions, EnumValueTellsNameTypeAndData)
{
    char name[8] = "#######";
    char data[8] = "#######";
    DWORD nameSize = 5, type = 99, size = 4;
    EXPECT_EQ(::RegEnumValueA(m_key, 0, name, &nameSize, nullptr, &type, reinterpret_cast<BYTE*>(data), &size),
              ERROR_SUCCESS);
    EXPECT_EQ(std::string(name, 7), "Text\0##"sv);
    EXPECT_EQ(std::string(data, 7), "abc\0###"sv);
    EXPECT_THAT((std::array{nameSize, type, size}), ElementsAre(4U, REG_SZ, 4U)); // only the data's NUL counts
}
} // namespace
