#include "RegistryHelper.h"

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "support/Printers.h"
#include "support/ScratchMachine.h"

namespace
{
using Quenlor::Utf8String;
using Quenlor::Fraxo::SharedUtilities::Native::RegistryHelper;
using namespace std::literals;

constexpr char Place[] = R"(Software\Quenlor Systems\Test)";
constexpr char Default[] = "default";
constexpr int DefaultNumber = 7;

class RegistryHelperTest : public ::testing::Test
{
protected:
    std::optional<StoredValue> Stored() const { return m_machine.ReadData(HKEY_CURRENT_USER, Place, "Value"); }

    ScratchMachine m_machine;
};

StoredValue Number(int number)
{
    return {REG_DWORD, {reinterpret_cast<const char*>(&number), sizeof number}};
}

TEST_F(RegistryHelperTest, GettersGiveTheDefaultForEveryOtherKindOfValue)
{
    constexpr bool Converted = true;
    struct Row
    {
        DWORD type;
        std::string_view stored;
        const char* text = Default;
        const char* expandable = Default;
        int number = DefaultNumber;
        bool isConverted = false; // to a number, when first read as one
    };
    // Numbers are read into 4 bytes. Text that does not fit there with its NUL, if it has one, is never looked at.
    const Row rows[] = {
        {REG_DWORD, "\0\0\0\0"sv, Default, Default, 0},
        {REG_DWORD, "\xFE\xFF\xFF\xFF", Default, Default, -2},
        {REG_DWORD, "\1\0\0\0\0\0\0\0"sv},
        {REG_BINARY, "1\0"sv},
        {REG_EXPAND_SZ, "%A%\0"sv, Default, "%A%"},
        {REG_SZ, "0\0"sv, "0", Default, 0, Converted},
        {REG_SZ, "00\0"sv, "00"}, // only the single character 0 is a zero
        {REG_SZ, "-12\0"sv, "-12", Default, -12, Converted},
        {REG_SZ, "1000\0"sv, "1000"},
        {REG_SZ, "1000", "1000", Default, 1000, Converted},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(::testing::Message() << "type " << row.type << ": " << ::testing::PrintToString(row.stored));
        const auto write = [&] { m_machine.WriteData(HKEY_CURRENT_USER, Place, "Value", row.type, row.stored); };
        write();
        EXPECT_EQ(RegistryHelper::GetStringValue(HKEY_CURRENT_USER, Place, "Value", Default), row.text);
        EXPECT_EQ(RegistryHelper::GetExpandedStringValue(HKEY_CURRENT_USER, Place, "Value", Default), row.expandable);
        EXPECT_EQ(RegistryHelper::GetIntValue(HKEY_CURRENT_USER, Place, "Value", DefaultNumber), row.number);
        EXPECT_EQ(Stored(), row.isConverted ? Number(row.number) : (StoredValue{row.type, std::string{row.stored}}));
        write();
        EXPECT_EQ(RegistryHelper::GetBoolValue(HKEY_CURRENT_USER, Place, "Value", true), row.number != 0);
    }
}

TEST_F(RegistryHelperTest, ReadingCreatesNothing)
{
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY{}})
    {
        EXPECT_EQ(RegistryHelper::GetStringValue(root, Place, "Value", Default), Default);
        EXPECT_EQ(RegistryHelper::GetIntValue(root, Place, "Value", DefaultNumber), DefaultNumber);
        EXPECT_FALSE(RegistryHelper::GetBoolValue(root, Place, "Value", false));
        EXPECT_FALSE(RegistryHelper::CheckIfKeyExists(root, Place));
    }
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, R"(Software\Quenlor Systems)"));
    m_machine.WriteText(HKEY_CURRENT_USER, Place, "Other", "1");
    EXPECT_EQ(RegistryHelper::GetIntValue(HKEY_CURRENT_USER, Place, "Value", DefaultNumber), DefaultNumber);
    EXPECT_TRUE(RegistryHelper::CheckIfKeyExists(HKEY_CURRENT_USER, R"(SOFTWARE\quenlor systems\)"));
    EXPECT_TRUE(RegistryHelper::CheckIfKeyExists(HKEY_CURRENT_USER, ""));
}

TEST_F(RegistryHelperTest, SettersCreateTheKeyAndReplaceAnyValue)
{
    for (const std::string& text : {"Gr\u00F6\u00DFe \\ \"%PATH%\"\r\n\t\xF6"s, "a\0b"s, std::string(100000, 'x'), ""s})
    {
        EXPECT_FALSE(RegistryHelper::SetStringValue(HKEY_CURRENT_USER, Place, "Value", text)); // false is success
        EXPECT_EQ(Stored(), (StoredValue{REG_SZ, text.empty() ? text : text + '\0'}));
        EXPECT_EQ(RegistryHelper::GetStringValue(HKEY_CURRENT_USER, Place, "Value", Default), text.c_str());
    }
    EXPECT_TRUE(RegistryHelper::SetIntValue(HKEY_CURRENT_USER, Place, "Value", -2));
    EXPECT_EQ(Stored(), Number(-2));
    EXPECT_TRUE(RegistryHelper::SetBoolValue(HKEY_CURRENT_USER, Place, "Value", true));
    EXPECT_EQ(Stored(), Number(1));

    // The failure of a write is reported the other way round, unless the key cannot be made.
    const Utf8String tooLong = std::string(16384, 'n');
    EXPECT_TRUE(RegistryHelper::SetStringValue(HKEY_CURRENT_USER, Place, tooLong, "text"));
    EXPECT_FALSE(RegistryHelper::SetIntValue(HKEY_CURRENT_USER, Place, tooLong, 1));
    EXPECT_FALSE(RegistryHelper::SetStringValue(HKEY_CURRENT_USER, R"(\Software)", "Value", "text"));
}
} // namespace
