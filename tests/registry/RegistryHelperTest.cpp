#include "RegistryHelper.h"

#include <optional>
#include <string>
#include <string_view>

#include <gmock/gmock.h>

#include "support/Printers.h"
#include "support/ScratchMachine.h"

namespace
{
using Quenlor::Utf8String;
using Quenlor::Fraxo::SharedUtilities::Native::RegistryHelper;
using namespace std::string_view_literals;

constexpr char Place[] = R"(Software\Quenlor Systems\FraxoPro\22.00.00)";
constexpr char Default[] = "default";
constexpr int DefaultNumber = 7;

class RegistryHelperTest : public ::testing::Test
{
protected:
    void Write(DWORD type, std::string_view bytes) const
    {
        m_machine.WriteData(HKEY_CURRENT_USER, Place, "Value", type, bytes);
    }

    std::optional<StoredValue> Stored(const char* name = "Value") const
    {
        return m_machine.ReadData(HKEY_CURRENT_USER, Place, name);
    }

    ScratchMachine m_machine;
};

StoredValue Number(int number)
{
    return {REG_DWORD, {reinterpret_cast<const char*>(&number), sizeof number}};
}

// ---- reading --------------------------------------------------------------------------------------------------------

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
    // clang-format off
    const Row rows[] = {
        {REG_DWORD, "\0\0\0\0"sv, Default, Default, 0},
        {REG_DWORD, "\0\1\0\0"sv, Default, Default, 256},
        {REG_DWORD, "\xFE\xFF\xFF\xFF", Default, Default, -2},
        {REG_DWORD, "\1\0\0\0\0\0\0\0"sv},
        {REG_QWORD, "\1\0\0\0\0\0\0\0"sv},
        {REG_BINARY, "1\0"sv},
        {REG_BINARY, "\1\0\0\0"sv},
        {REG_NONE, "1\0"sv},
        {REG_MULTI_SZ, "1\0\0"sv},
        {REG_EXPAND_SZ, "1\0"sv, Default, "1"},
        {REG_EXPAND_SZ, "%PATH%;x\0"sv, Default, "%PATH%;x"},
        {REG_SZ, "", ""},
        {REG_SZ, "\0"sv, ""},
        {REG_SZ, "abc\0"sv, "abc"},
        {REG_SZ, "\xF6\xDF\0"sv, "\xF6\xDF"}, // no UTF-8
        {REG_SZ, "1\0"sv, "1", Default, 1, Converted},
        {REG_SZ, "0\0"sv, "0", Default, 0, Converted},
        {REG_SZ, "00\0"sv, "00"}, // only the single character 0 is a zero
        {REG_SZ, "-12\0"sv, "-12", Default, -12, Converted},
        {REG_SZ, " 42\0"sv, " 42", Default, 42, Converted},
        {REG_SZ, "8x\0"sv, "8x", Default, 8, Converted},
        {REG_SZ, "5\0x\0"sv, "5", Default, 5, Converted},
        {REG_SZ, "999\0"sv, "999", Default, 999, Converted},
        {REG_SZ, "1000\0"sv, "1000"},
        {REG_SZ, "1000", "1000", Default, 1000, Converted},
    };
    // clang-format on
    for (const Row& row : rows)
    {
        SCOPED_TRACE(::testing::Message() << "type " << row.type << ": " << ::testing::PrintToString(row.stored));
        const StoredValue asWritten{row.type, std::string{row.stored}};
        const StoredValue afterwards = row.isConverted ? Number(row.number) : asWritten;

        Write(row.type, row.stored);
        EXPECT_EQ(RegistryHelper::GetStringValue(HKEY_CURRENT_USER, Place, "Value", Default), row.text);
        EXPECT_EQ(RegistryHelper::GetExpandedStringValue(HKEY_CURRENT_USER, Place, "Value", Default), row.expandable);
        EXPECT_EQ(Stored(), asWritten);
        for (int round = 0; round < 2; ++round) // the second time a converted value is a number already
        {
            EXPECT_EQ(RegistryHelper::GetIntValue(HKEY_CURRENT_USER, Place, "Value", DefaultNumber), row.number);
            EXPECT_EQ(Stored(), afterwards);
        }
        for (const bool whenMissing : {false, true})
        {
            Write(row.type, row.stored);
            EXPECT_EQ(RegistryHelper::GetBoolValue(HKEY_CURRENT_USER, Place, "Value", whenMissing),
                      row.number == DefaultNumber ? whenMissing : row.number != 0);
            EXPECT_EQ(Stored(), afterwards);
        }
    }
}

TEST_F(RegistryHelperTest, TextThatCannotBeRewrittenAsANumberGivesTheDefault)
{
    Write(REG_SZ, "5\0"sv);
    int number = 0;
    bool flag = true;
    m_machine.WhileReadOnly(HKEY_CURRENT_USER, Place,
                            [&]
                            {
                                number = RegistryHelper::GetIntValue(HKEY_CURRENT_USER, Place, "Value", DefaultNumber);
                                flag = RegistryHelper::GetBoolValue(HKEY_CURRENT_USER, Place, "Value", false);
                            });
    EXPECT_EQ(number, DefaultNumber);
    EXPECT_FALSE(flag);
    EXPECT_EQ(Stored(), (StoredValue{REG_SZ, {"5", 2}}));
}

void ExpectDefaults(HKEY root, const Utf8String& subKey, const Utf8String& name)
{
    EXPECT_EQ(RegistryHelper::GetStringValue(root, subKey, name, Default), Default);
    EXPECT_EQ(RegistryHelper::GetExpandedStringValue(root, subKey, name, Default), Default);
    EXPECT_EQ(RegistryHelper::GetIntValue(root, subKey, name, DefaultNumber), DefaultNumber);
    EXPECT_TRUE(RegistryHelper::GetBoolValue(root, subKey, name, true));
    EXPECT_FALSE(RegistryHelper::GetBoolValue(root, subKey, name, false));
}

TEST_F(RegistryHelperTest, WhatIsMissingGivesTheDefaultAndIsNotCreated)
{
    ExpectDefaults(HKEY_CURRENT_USER, Place, "Value");
    EXPECT_FALSE(m_machine.HasKey(HKEY_CURRENT_USER, R"(Software\Quenlor Systems)"));

    m_machine.WriteText(HKEY_CURRENT_USER, Place, "Other", "1");
    ExpectDefaults(HKEY_CURRENT_USER, Place, "Value");
    ExpectDefaults(HKEY_CURRENT_USER, Place, "");
    ExpectDefaults(HKEY_LOCAL_MACHINE, Place, "Other");
    ExpectDefaults(nullptr, Place, "Other");
    EXPECT_EQ(Stored(), std::nullopt);
}

TEST_F(RegistryHelperTest, CheckIfKeyExistsAsksForTheKeyAlone)
{
    EXPECT_FALSE(RegistryHelper::CheckIfKeyExists(HKEY_CURRENT_USER, Place));
    EXPECT_TRUE(RegistryHelper::CheckIfKeyExists(HKEY_CURRENT_USER, ""));
    EXPECT_FALSE(RegistryHelper::CheckIfKeyExists(nullptr, ""));
    m_machine.WriteText(HKEY_CURRENT_USER, Place, "Value", "1");
    EXPECT_TRUE(RegistryHelper::CheckIfKeyExists(HKEY_CURRENT_USER, Place));
    EXPECT_TRUE(RegistryHelper::CheckIfKeyExists(HKEY_CURRENT_USER, R"(SOFTWARE\quenlor systems\)"));
    EXPECT_FALSE(
        RegistryHelper::CheckIfKeyExists(HKEY_CURRENT_USER, R"(Software\Quenlor Systems\FraxoPro\22.00.00\Value)"));
    EXPECT_FALSE(RegistryHelper::CheckIfKeyExists(HKEY_LOCAL_MACHINE, Place));
}

// ---- writing --------------------------------------------------------------------------------------------------------

TEST_F(RegistryHelperTest, SettersCreateTheKeyAndReplaceAnyValue)
{
    EXPECT_FALSE(RegistryHelper::SetStringValue(HKEY_CURRENT_USER, Place, "Value", "text")); // false is success
    EXPECT_EQ(Stored(), (StoredValue{REG_SZ, {"text", 5}}));
    EXPECT_TRUE(RegistryHelper::SetIntValue(HKEY_CURRENT_USER, Place, "Value", -2));
    EXPECT_EQ(Stored(), Number(-2));
    EXPECT_TRUE(RegistryHelper::SetBoolValue(HKEY_CURRENT_USER, Place, "Value", true));
    EXPECT_EQ(Stored(), Number(1));
    EXPECT_TRUE(RegistryHelper::SetBoolValue(HKEY_CURRENT_USER, Place, "Value", false));
    EXPECT_EQ(Stored(), Number(0));
    EXPECT_FALSE(RegistryHelper::SetStringValue(HKEY_CURRENT_USER, Place, "", "default value"));
    EXPECT_EQ(RegistryHelper::GetStringValue(HKEY_CURRENT_USER, Place, "", Default), "default value");
    EXPECT_EQ(Stored(), Number(0));

    EXPECT_TRUE(RegistryHelper::SetIntValue(HKEY_CURRENT_USER, R"(New\Numbers)", "Value", 3));
    EXPECT_TRUE(RegistryHelper::SetBoolValue(HKEY_CURRENT_USER, R"(New\Flags)", "Value", true));
    EXPECT_EQ(RegistryHelper::GetIntValue(HKEY_CURRENT_USER, R"(New\Numbers)", "Value", DefaultNumber), 3);
    EXPECT_TRUE(RegistryHelper::GetBoolValue(HKEY_CURRENT_USER, R"(New\Flags)", "Value", false));
}

TEST_F(RegistryHelperTest, SetStringValuePassesEveryByteOn)
{
    struct Row
    {
        Utf8String text;
        std::string_view stored;
    };
    const std::string large(100000, 'x');
    const Row rows[] = {
        {"", ""sv},
        {"Gr\u00F6\u00DFe \\ \"%PATH%\"\r\n\t", "Gr\u00F6\u00DFe \\ \"%PATH%\"\r\n\t\0"sv},
        {"\xF6\xDF", "\xF6\xDF\0"sv},
        {"a\0b"sv, "a\0b\0"sv},
        {large, {large.c_str(), large.length() + 1}},
    };
    for (const Row& row : rows)
    {
        EXPECT_FALSE(RegistryHelper::SetStringValue(HKEY_CURRENT_USER, Place, "Gr\u00F6\u00DFe", row.text));
        EXPECT_EQ(Stored("Gr\u00F6\u00DFe"), (StoredValue{REG_SZ, std::string{row.stored}}));
        EXPECT_EQ(RegistryHelper::GetStringValue(HKEY_CURRENT_USER, Place, "Gr\u00F6\u00DFe", Default),
                  row.text.c_str());
    }
}

TEST_F(RegistryHelperTest, SetStringValueReturnsTrueOnlyWhenTheKeyWasThereAndTheWriteFailed)
{
    const Utf8String tooLong = std::string(16384, 'n');
    EXPECT_TRUE(RegistryHelper::SetStringValue(HKEY_CURRENT_USER, Place, tooLong, "text"));
    EXPECT_FALSE(RegistryHelper::SetIntValue(HKEY_CURRENT_USER, Place, tooLong, 1));
    EXPECT_FALSE(RegistryHelper::SetBoolValue(HKEY_CURRENT_USER, Place, tooLong, true));
    EXPECT_TRUE(m_machine.HasKey(HKEY_CURRENT_USER, Place));

    constexpr char BadKey[] = R"(\Software)";
    EXPECT_FALSE(RegistryHelper::SetStringValue(HKEY_CURRENT_USER, BadKey, "Value", "text"));
    EXPECT_FALSE(RegistryHelper::SetIntValue(HKEY_CURRENT_USER, BadKey, "Value", 1));
    EXPECT_FALSE(RegistryHelper::SetBoolValue(HKEY_CURRENT_USER, BadKey, "Value", true));
}

TEST_F(RegistryHelperTest, TheKeyOfThisReleaseIsAPathBelowARoot)
{
    EXPECT_EQ(RegistryHelper::GetCurrentUserKey(), Place);
}
} // namespace
