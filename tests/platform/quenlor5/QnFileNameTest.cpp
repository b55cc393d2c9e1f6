#include <Quenlor/QnFileName.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor;
using enum QnFileNameStatus;

constexpr bool SystemHasOneRoot = std::filesystem::path::preferred_separator == '/';

using Path = std::pair<const wchar_t*, const wchar_t*>; ///< Given and expected.

TEST(AppendToPath, PutsOneSeparatorBetween)
{
    EXPECT_STREQ(QnFileName(L"C:\\a").AppendToPath(L"b").AppendToPath(L"c\\").GetName(), L"C:\\a\\b\\c\\");
    EXPECT_STREQ(QnFileName(L"/a/").AppendToPath(L"\\b").GetName(), L"/a/b");
    EXPECT_STREQ(QnFileName(L"").AppendToPath(L"\\Samples\\").GetName(), L"\\Samples\\");
    EXPECT_STREQ(QnFileName(L"C:\\a").AppendToPath(L"").AppendToPath(nullptr).GetName(), L"C:\\a");
    QnFileName itself{L"a"};
    EXPECT_STREQ(itself.AppendToPath(itself.GetName()).GetName(), L"a\\a");
}

TEST(FixPathName, GivesAllSpellingsOfAPathOneSpelling)
{
    const Path rows[] = {
        {L"C:/A//b\\\\c", LR"(C:\A\b\c)"},
        {LR"(C:\a\.\b\..\c)", LR"(C:\a\c)"},
        {LR"(C:\..\..\a)", LR"(C:\a)"},
        {LR"(C:\a\b\)", LR"(C:\a\b\)"}, // callers append file names to it
        {LR"(C:a\..\b)", LR"(C:b)"},
        {LR"(\\server\share\..\x)", LR"(\\server\share\x)"},
        {L"//server//share//x", SystemHasOneRoot ? LR"(\server\share\x)" : LR"(\\server\share\x)"},
        {LR"(\\server\/)", LR"(\\server\)"},
        {LR"(..\a\..\..\b)", LR"(..\..\b)"},
        {LR"(a\..)", L"."},
        {LR"(a\..\C:\b)", LR"(.\C:\b)"}, // stays relative
        {L"/usr//lib/../bin", LR"(\usr\bin)"},
        {LR"(\\?\C:\a\..\b)", LR"(\\?\C:\a\..\b)"},
        {L"", L""},
    };
    for (const auto& [given, expected] : rows)
    {
        WString path = given;
        EXPECT_EQ(QnFileName::FixPathName(path, path.c_str()), Success);
        EXPECT_STREQ(path.c_str(), expected);
    }
    WString path = L"a";
    EXPECT_EQ(QnFileName::FixPathName(path, nullptr), InvalidName);
    EXPECT_TRUE(path.empty());
}

TEST(IsAbsolutePath, WantsARootAfterTheDevice)
{
    for (const wchar_t* path : {LR"(C:\a)", L"z:/a", LR"(\\server\share)", LR"(\/server\share)"})
        EXPECT_TRUE(QnFileName(path).IsAbsolutePath()) << QnFileName(path).GetNameUtf8();
    for (const wchar_t* path : {L"", L"a", LR"(a\b)", L"C:", L"C:a", LR"(..\a)"})
        EXPECT_FALSE(QnFileName(path).IsAbsolutePath()) << QnFileName(path).GetNameUtf8();
    for (const wchar_t* path : {LR"(\a)", LR"(\\)", LR"(\\\a)"})
        EXPECT_EQ(QnFileName(path).IsAbsolutePath(), SystemHasOneRoot) << QnFileName(path).GetNameUtf8();
    QnFileName executable;
    ASSERT_EQ(QnGetModuleFileName(executable, nullptr), QuenlorStatus::Success);
    EXPECT_TRUE(executable.IsAbsolutePath());
}

TEST(PathParts, AreCutAtTheLastSeparatorAndTheLastDot)
{
    struct
    {
        const wchar_t* path;
        const wchar_t* directoryName;
        const wchar_t* baseName;
        const wchar_t* deviceAndDirectory;
    } const rows[] = {
        {LR"(C:\a\b.tar.gz)", LR"(C:\a)", L"b.tar", LR"(C:\a\)"},
        {LR"(C:\b.txt)", LR"(C:\)", L"b", LR"(C:\)"},
        {LR"(C:b.txt)", L"C:", L"b", L"C:"},
        {LR"(\\server\share\b)", LR"(\\server\share)", L"b", LR"(\\server\share\)"},
        {L"/usr/bin/tool", L"/usr/bin", L"tool", L"/usr/bin/"},
        {LR"(a.b\file)", L"a.b", L"file", LR"(a.b\)"},
        {LR"(a\.profile)", L"a", L".profile", LR"(a\)"},
        {LR"(C:\a\\)", LR"(C:\a)", L"", LR"(C:\a\\)"},
        {L"file", L"", L"file", L""},
    };
    for (const auto& row : rows)
    {
        EXPECT_STREQ(QnFileName::GetDirectoryName(row.path).c_str(), row.directoryName);
        EXPECT_STREQ(QnFileName::GetFileNameWithoutExtension(row.path).c_str(), row.baseName);
        const auto twelve = static_cast<QnFileName::FileNameParts>(12);
        EXPECT_STREQ(QnFileName(twelve, row.path).GetName(), row.deviceAndDirectory);
    }
    EXPECT_STREQ(QnFileName(QnFileName::FileNameAndExtension, LR"(C:\a\b.tar.gz)").GetName(), L"b.tar.gz");
}

/// Files of a scratch machine, made with the standard library and asked for through ours.
class FilesTest : public ::testing::Test
{
protected:
    /// A path below a scratch folder, as the library's callers write it.
    std::wstring Below(const wchar_t* path) const
    {
        return QnFileName{Utf8String{m_machine.Folder("files")}}.AppendToPath(path).GetName();
    }
    std::filesystem::path Native(const wchar_t* path) const { return QnFileName{Below(path)}.ToNativePath(); }
    bool Exists(const wchar_t* path) const { return QnFileName::DoesPathExist(Below(path).c_str()); }
    QnFileNameStatus MakeFolder(const wchar_t* path) const
    {
        return QnFileName::CreateNewDirectory(Below(path).c_str());
    }
    QnFileNameStatus Copy(const wchar_t* from, const wchar_t* to, bool overwrite) const
    {
        return QnFileName::QnCopyFile(Below(from).c_str(), Below(to).c_str(), overwrite);
    }

    ScratchMachine m_machine;
};

TEST_F(FilesTest, AreFoundInAnyLetterCaseWithDotsResolvedByText)
{
    ASSERT_EQ(MakeFolder(L"PlugIns\\StrucLink\\"), Success);
    WriteFile(Native(L"PlugIns\\StrucLink\\Größe.ini"), "x");
    for (const wchar_t* const path :
         {L"plugins\\STRUCLINK\\GRÖßE.INI", L"plugins\\StrucLink\\", L"missing\\..\\PlugIns\\.\\StrucLink",
          L"PlugIns\\StrucLink\\Größe.ini\\..\\größe.INI", L"PlugIns\\StrucLink\\Größe.ini\\."})
        EXPECT_TRUE(Exists(path)) << path;
    EXPECT_FALSE(Exists(L"PlugIns\\StrucLink\\..\\Größe.ini"));
    EXPECT_FALSE(QnFileName::DoesPathExist(L""));
    EXPECT_EQ(ReadFile(Native(L"PLUGINS\\struclink\\größe.INI")), "x");
}

TEST_F(FilesTest, AFolderIsCreatedWithItsParentsInTheFolderThatExists)
{
    EXPECT_EQ(MakeFolder(L"missing\\..\\Default\\Plugins\\"), Success);
    EXPECT_FALSE(Exists(L"missing"));
    EXPECT_EQ(MakeFolder(L"Default\\PlugIns"), AlreadyExists);
    EXPECT_EQ(MakeFolder(L"default\\a\\b"), Success);
    EXPECT_TRUE(Exists(L"Default\\a\\b"));
    WriteFile(Native(L"file"), "x");
    EXPECT_EQ(MakeFolder(L"file"), Failed);
    EXPECT_EQ(QnFileName::CreateNewDirectory(L""), InvalidName);
}

TEST_F(FilesTest, ACopyIsWholeAndWritable)
{
    const std::filesystem::path source = Native(L"source"), copy = Native(L"copy"), used = Native(L".quenlor-copy-1");
    const std::string text(300000, 't');
    WriteFile(source, text);
    permissions(source, std::filesystem::perms::owner_read);
    const std::ofstream otherCopier{used};

    EXPECT_EQ(Copy(L"source", L"copy", false), Success);
    EXPECT_EQ(ReadFile(copy), text);
    WriteFile(copy, "changed");
    EXPECT_EQ(Copy(L"source", L"copy", false), Success);
    EXPECT_EQ(ReadFile(copy), "changed");
    EXPECT_EQ(Copy(L"source", L"copy", true), Success);
    EXPECT_EQ(ReadFile(copy), text);

    EXPECT_EQ(Copy(L"nowhere", L"new", false), Failed);
    EXPECT_EQ(Copy(L"source", L"no\\folder", false), Failed);
    EXPECT_TRUE(exists(used));
    const std::filesystem::directory_iterator entries{copy.parent_path()};
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 3);
    permissions(source, std::filesystem::perms::owner_all);
}
} // namespace
