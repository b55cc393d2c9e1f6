#include <Quenlor/QnFileName.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <utility>

#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor;
using enum QnFileNameStatus;

constexpr bool SystemHasOneRoot = std::filesystem::path::preferred_separator == '/';

TEST(AppendToPath, PutsOneSeparatorBetween)
{
    EXPECT_STREQ(QnFileName(L"C:\\a").AppendToPath(L"b").AppendToPath(L"c\\").GetName(), L"C:\\a\\b\\c\\");
    EXPECT_STREQ(QnFileName(L"/a/").AppendToPath(L"\\b").GetName(), L"/a/b");
    EXPECT_STREQ(QnFileName(L"").AppendToPath(L"\\Samples\\").GetName(), L"\\Samples\\");
    EXPECT_STREQ(QnFileName(L"C:\\a").AppendToPath(L"").AppendToPath(nullptr).GetName(), L"C:\\a");
}

// What holds of any path, PathFuzz shows.
TEST(FixPathName, GivesAllSpellingsOfAPathOneSpelling)
{
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"C:/A//b\\\\.\\c", LR"(C:\A\b\c)"},
        {LR"(C:\..\a\..\b\)", LR"(C:\b\)"}, // callers append file names to it
        {LR"(C:a\..\b)", LR"(C:b)"},
        {LR"(\\server\share\..\x)", LR"(\\server\share\x)"},
        {L"//server//share//x", SystemHasOneRoot ? LR"(\server\share\x)" : LR"(\\server\share\x)"},
        {LR"(..\a\..\..\b)", LR"(..\..\b)"},
        {LR"(a\..)", L"."},
        {LR"(a\..\C:\b)", LR"(.\C:\b)"}, // stays relative
        {L"/usr//lib/../bin", LR"(\usr\bin)"},
        {LR"(\\?\C:\a\..\b)", LR"(\\?\C:\a\..\b)"},
    };
    for (const auto& [given, expected] : rows)
    {
        WString path = given;
        EXPECT_EQ(QnFileName::FixPathName(path, path.c_str()), Success);
        EXPECT_STREQ(path.c_str(), expected);
    }
}

TEST(IsAbsolutePath, WantsARootAfterTheDevice)
{
    for (const wchar_t* path : {LR"(C:\a)", L"z:/a", LR"(\\server\share)", LR"(\/server\share)"})
        EXPECT_TRUE(QnFileName(path).IsAbsolutePath()) << QnFileName(path).GetNameUtf8();
    for (const wchar_t* path : {L"", LR"(a\b)", L"C:", L"C:a", LR"(1:\a)", LR"(..\a)"})
        EXPECT_FALSE(QnFileName(path).IsAbsolutePath()) << QnFileName(path).GetNameUtf8();
    for (const wchar_t* path : {LR"(\a)", LR"(\\\a)"})
        EXPECT_EQ(QnFileName(path).IsAbsolutePath(), SystemHasOneRoot) << QnFileName(path).GetNameUtf8();
}

TEST(PathParts, AreCutAtTheLastSeparatorAndTheLastDot)
{
    const wchar_t* const rows[][4] = {
        // the last with the separators
        {LR"(C:\a\b.tar.gz)", LR"(C:\a)", L"b.tar", LR"(C:\a\)"},
        {LR"(C:\b.txt)", LR"(C:\)", L"b", LR"(C:\)"},
        {LR"(C:b.txt)", L"C:", L"b", L"C:"},
        {LR"(\\server\share\b)", LR"(\\server\share)", L"b", LR"(\\server\share\)"},
        {L"a.b//.profile", L"a.b", L".profile", L"a.b//"},
        {L"file", L"", L"file", L""},
    };
    for (const auto& [path, directory, baseName, deviceAndDirectory] : rows)
    {
        EXPECT_STREQ(QnFileName::GetDirectoryName(path).c_str(), directory);
        EXPECT_STREQ(QnFileName::GetFileNameWithoutExtension(path).c_str(), baseName);
        EXPECT_STREQ(QnFileName(QnFileName::DeviceAndDirectory, path).GetName(), deviceAndDirectory);
    }
}

/// Files made with the standard library and asked for through ours.
class FilesTest : public ::testing::Test
{
protected:
    FilesTest() { current_path(m_machine.Root()); }
    ~FilesTest() override { current_path(m_before); }

    const std::filesystem::path m_before = std::filesystem::current_path();
    const ScratchMachine m_machine;
};

TEST_F(FilesTest, AreFoundInAnyLetterCaseWithDotsResolvedByText)
{
    WriteFile(std::filesystem::path{"PlugIns"} / "StrucLink" / u8"Größe.ini", "x");
    for (const wchar_t* const path :
         {L"plugins\\STRUCLINK\\GRÖßE.INI", L"missing\\..\\PlugIns\\.\\StrucLink\\",
          L"PlugIns\\StrucLink\\Größe.ini\\..\\größe.INI", L"PlugIns\\StrucLink\\Größe.ini\\."})
        EXPECT_TRUE(QnFileName::DoesPathExist(path)) << path;
    for (const wchar_t* const path : {L"PlugIns\\StrucLink\\..\\Größe.ini", L""})
        EXPECT_FALSE(QnFileName::DoesPathExist(path)) << path;
    EXPECT_EQ(ReadFile(QnFileName{L"PLUGINS\\struclink\\größe.INI"}.ToNativePath()), "x");
}

TEST_F(FilesTest, ACopyOfAReadOnlyFileIsWritable)
{
    const std::filesystem::path source = m_machine.Root() / "source", copy = m_machine.Root() / "copy";
    WriteFile(source, "text");
    permissions(source, std::filesystem::perms::owner_read);
    EXPECT_EQ(QnFileName::QnCopyFile(L"source", L"copy", false), Success);
    WriteFile(copy, "changed");
    EXPECT_EQ(QnFileName::QnCopyFile(L"source", L"copy", false), Success);
    EXPECT_EQ(ReadFile(copy), "changed");
    EXPECT_EQ(QnFileName::QnCopyFile(L"source", L"copy", true), Success);
    EXPECT_EQ(ReadFile(copy), "text");
    EXPECT_NE(status(copy).permissions() & std::filesystem::perms::owner_write, std::filesystem::perms::none);
    permissions(source, std::filesystem::perms::owner_all);
}
} // namespace
