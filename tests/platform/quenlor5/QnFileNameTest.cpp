#include <Quenlor/QnFileName.h>

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/Files.h"
#include "support/ScratchMachine.h"

namespace
{
using namespace Quenlor;

constexpr bool SystemHasOneRoot = std::filesystem::path::preferred_separator == '/';

struct Path
{
    const wchar_t* given;
    const wchar_t* expected;
};

TEST(SeparatorsAtTheEnd, AreAddedOnlyWhereOneIsMissing)
{
    const Path rows[] = {{L"C:\\a", L"C:\\a\\"}, {L"/opt/a/", L"/opt/a/"}, {L"", L""}};
    for (const Path& row : rows)
    {
        QnFileName name{row.given};
        name.AppendSeparator();
        EXPECT_STREQ(name.GetName(), row.expected);
    }
    EXPECT_STREQ(QnFileName(L"C:\\a").AppendToPath(L"b").AppendToPath(L"c\\").GetName(), L"C:\\a\\b\\c\\");
    EXPECT_STREQ(QnFileName(L"/a/").AppendToPath(L"\\b").GetName(), L"/a/b");
    EXPECT_STREQ(QnFileName(L"").AppendToPath(L"Samples\\").GetName(), L"Samples\\"); // stays relative
    EXPECT_STREQ(QnFileName(L"C:\\a").AppendToPath(L"").AppendToPath(nullptr).GetName(), L"C:\\a");
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
    for (const Path& row : rows)
    {
        WString fixed;
        EXPECT_EQ(QnFileName::FixPathName(fixed, row.given), QnFileNameStatus::Success);
        EXPECT_STREQ(fixed.c_str(), row.expected);
    }
    WString path = L"a/b";
    QnFileName::FixPathName(path, path.c_str());
    EXPECT_STREQ(path.c_str(), L"a\\b");
}

TEST(IsAbsolutePath, WantsARootBehindTheDevice)
{
    for (const wchar_t* path : {LR"(C:\a)", L"z:/a", LR"(\\server\share)", LR"(\/server\share)"})
        EXPECT_TRUE(QnFileName(path).IsAbsolutePath()) << QnFileName(path).GetNameUtf8().c_str();
    for (const wchar_t* path : {L"", L"a", LR"(a\b)", L"C:", L"C:a", LR"(..\a)"})
        EXPECT_FALSE(QnFileName(path).IsAbsolutePath()) << QnFileName(path).GetNameUtf8().c_str();
    for (const wchar_t* path : {LR"(\a)", LR"(\\)", LR"(\\\a)"})
        EXPECT_EQ(QnFileName(path).IsAbsolutePath(), SystemHasOneRoot) << QnFileName(path).GetNameUtf8().c_str();
    QnFileName executable;
    ASSERT_EQ(QnGetModuleFileName(executable, nullptr), QuenlorStatus::Success);
    EXPECT_TRUE(executable.IsAbsolutePath());
}

struct Seams
{
    const wchar_t* path;
    const wchar_t* directoryName;
    const wchar_t* baseName;
    const wchar_t* deviceAndDirectory;
};

TEST(PathParts, AreCutAtTheLastSeparatorAndTheLastDot)
{
    const Seams rows[] = {
        {LR"(C:\a\b.tar.gz)", LR"(C:\a)", L"b.tar", LR"(C:\a\)"},
        {LR"(C:\b.txt)", LR"(C:\)", L"b", LR"(C:\)"},
        {LR"(C:b.txt)", L"C:", L"b", L"C:"},
        {L"/usr/bin/tool", L"/usr/bin", L"tool", L"/usr/bin/"},
        {LR"(a.b\file)", L"a.b", L"file", LR"(a.b\)"},
        {LR"(a\.profile)", L"a", L".profile", LR"(a\)"},
        {LR"(C:\a\\)", LR"(C:\a)", L"", LR"(C:\a\\)"},
        {L"file", L"", L"file", L""},
    };
    for (const Seams& row : rows)
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
    QnFileName Below(const wchar_t* path) const
    {
        QnFileName name;
        name.SetNameUtf8(m_machine.Folder("files").c_str());
        return name.AppendToPath(path);
    }

    static void Write(const QnFileName& file, const std::string& text) { WriteFile(file.ToNativePath(), text); }

    static std::string Read(const QnFileName& file) { return ReadFile(file.ToNativePath()); }

    ScratchMachine m_machine;
};

TEST_F(FilesTest, ExistAsFileAndAsFolderInAnyLetterCase)
{
    ASSERT_EQ(QnFileName::CreateNewDirectory(Below(L"PlugIns\\StrucLink").GetName()), QnFileNameStatus::Success);
    Write(Below(L"PlugIns\\StrucLink\\Größe.ini"), "x");
    EXPECT_TRUE(QnFileName::DoesPathExist(Below(L"plugins\\STRUCLINK\\GRÖßE.INI").GetName()));
    EXPECT_TRUE(QnFileName::DoesPathExist(Below(L"plugins\\StrucLink\\").GetName()));
    EXPECT_FALSE(QnFileName::DoesPathExist(L""));
    EXPECT_EQ(Read(Below(L"PLUGINS\\struclink\\größe.INI")), "x");
}

TEST_F(FilesTest, DotsAreResolvedByText)
{
    Write(Below(L"folder\\file"), "x");
    for (const wchar_t* const path : {L"missing\\..\\folder\\.\\file", L"folder\\file\\..\\FILE", L"folder\\file\\."})
        EXPECT_TRUE(QnFileName::DoesPathExist(Below(path).GetName())) << path;
    EXPECT_FALSE(QnFileName::DoesPathExist(Below(L"folder\\..\\file").GetName()));
    EXPECT_EQ(QnFileName::CreateNewDirectory(Below(L"missing\\..\\new").GetName()), QnFileNameStatus::Success);
    EXPECT_FALSE(QnFileName::DoesPathExist(Below(L"missing").GetName()));
}

TEST_F(FilesTest, AFolderIsCreatedWithItsParentsAndInTheFolderThatIsThere)
{
    EXPECT_EQ(QnFileName::CreateNewDirectory(Below(L"Default\\Plugins\\").GetName()), QnFileNameStatus::Success);
    EXPECT_EQ(QnFileName::CreateNewDirectory(Below(L"Default\\PlugIns").GetName()), QnFileNameStatus::AlreadyExists);
    EXPECT_EQ(QnFileName::CreateNewDirectory(Below(L"default\\a\\b").GetName()), QnFileNameStatus::Success);
    EXPECT_TRUE(QnFileName::DoesPathExist(Below(L"Default\\a\\b").GetName()));

    Write(Below(L"file"), "x");
    EXPECT_EQ(QnFileName::CreateNewDirectory(Below(L"file").GetName()), QnFileNameStatus::Failed);
}

TEST_F(FilesTest, ACopyClearsWhatKilledOnesLeft)
{
    const std::filesystem::path abandoned = Below(L".quenlor-copy-1").ToNativePath();
    WriteFile(abandoned, "x");
    last_write_time(abandoned, std::filesystem::file_time_type::clock::now() - std::chrono::hours{2});
    const std::filesystem::path used = Below(L".quenlor-copy-2").ToNativePath();
    const std::ofstream otherCopier{used};
    Write(Below(L"source"), "x");
    EXPECT_EQ(QnFileName::QnCopyFile(Below(L"source").GetName(), Below(L"copy").GetName(), true),
              QnFileNameStatus::Success);
    EXPECT_FALSE(exists(abandoned));
    EXPECT_TRUE(exists(used));
}

TEST_F(FilesTest, ACopyIsWholeWritableAndLeavesNothingBeside)
{
    const QnFileName source = Below(L"source");
    const QnFileName copy = Below(L"copy");
    const std::string text(300000, 't');
    Write(source, text);
    std::filesystem::permissions(source.ToNativePath(), std::filesystem::perms::owner_read);

    EXPECT_EQ(QnFileName::QnCopyFile(source.GetName(), copy.GetName(), false), QnFileNameStatus::Success);
    EXPECT_EQ(Read(copy), text);
    Write(copy, "changed");
    EXPECT_EQ(QnFileName::QnCopyFile(source.GetName(), copy.GetName(), false), QnFileNameStatus::Success);
    EXPECT_EQ(Read(copy), "changed") << "a file that somebody has made and changed meanwhile";
    EXPECT_EQ(QnFileName::QnCopyFile(source.GetName(), copy.GetName(), true), QnFileNameStatus::Success);
    EXPECT_EQ(Read(copy), text);

    EXPECT_NE(QnFileName::QnCopyFile(Below(L"nowhere").GetName(), Below(L"new").GetName(), false),
              QnFileNameStatus::Success);
    EXPECT_NE(QnFileName::QnCopyFile(source.GetName(), Below(L"no\\folder").GetName(), false),
              QnFileNameStatus::Success);
    const std::filesystem::directory_iterator entries{copy.ToNativePath().parent_path()};
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 2);
    std::filesystem::permissions(source.ToNativePath(), std::filesystem::perms::owner_all);
}
} // namespace
