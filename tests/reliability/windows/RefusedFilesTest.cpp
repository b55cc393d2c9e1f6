#include <filesystem>
#include <string>

#include <Platform/Win32.h>
#include <Quenlor/QnFileName.h>
#include <gtest/gtest.h>

#include "IniReader.h"
#include "configfiles/UserFile.h"
#include "reliability/Attacks.h"
#include "reliability/windows/OpenHandles.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// Files that Windows refuses to open, make or replace, for reasons that occur on real machines.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor;
namespace fs = std::filesystem;

enum Kind
{
    Missing,
    File,
    Folder,
    Held, ///< a file that a program has open and shares with no other
};

TEST(RefusedFiles, LeaveNoCopyAndNoHandle)
{
    const ScratchMachine machine;
    const fs::path root = machine.Root() / "files", source = root / "Default.ini", beside = root / "User.ini";
    const fs::path data = root / "Local AppData", below = data / "a" / "User.ini", away = "Q:/a/User.ini";
    constexpr char notFound[] = "Default.ini file not found. The installation of FRAXO.Pro may be corrupt.";
    constexpr char noFolder[] = "Default.ini file target directory could not be created.";
    constexpr char notCopied[] = "Default.ini file could not be copied.";
    const struct
    {
        Kind source, obstacle;
        fs::path place, copy; ///< of the obstacle, and of the copy
        const char* message;
    } cases[] = {
        {Missing, Missing, beside, beside, notFound}, {Folder, Missing, beside, beside, notCopied},
        {Held, Missing, below, below, notCopied},     {File, Missing, away, away, noFolder},
        {File, File, data, below, noFolder},          {File, Held, beside, beside, ""},
        {File, Folder, beside, beside, ""},           {Missing, File, beside, beside, ""},
    };
    MessageOf({beside.string(), source.string()}); // what the first call loads stays open
    for (const auto& [atSource, atPlace, place, copy, message] : cases)
    {
        SCOPED_TRACE(::testing::Message() << atSource << ' ' << atPlace << ' ' << copy);
        HANDLE held = nullptr;
        for (const auto& [kind, path] : {std::pair{atSource, source}, std::pair{atPlace, place}})
        {
            if (kind == Folder)
                create_directories(path);
            if (kind == File || kind == Held)
                WriteFile(path, "before");
            if (kind == Held)
                held = ::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        }
        const int before = OpenHandles();
        EXPECT_EQ(MessageOf({copy.string(), source.string()}), message);
        EXPECT_EQ(QnFileName::QnCopyFile(source.c_str(), copy.c_str(), true), QnFileNameStatus::Failed);
        EXPECT_EQ(OpenHandles(), before);
        ::CloseHandle(held);
        EXPECT_EQ(CountAndAgeTemporaryFiles(copy.parent_path()), 0U);
        EXPECT_EQ(ReadFile(place), atPlace == File || atPlace == Held ? "before" : "");
        fs::remove_all(root);
    }
}

TEST(RefusedFiles, AreNotThoseWithLongPathsOfForeignLetters)
{
    const ScratchMachine machine;
    const fs::path source = machine.Root() / "Default.ini";
    WriteFile(source, "[Main]\nSize=4\n");
    const std::wstring name(60, L'\u6f22');
    const QnFileName copy{(machine.Root() / name / name / name / name / name / "User.ini").wstring()};
    IniReader reader;
    EXPECT_TRUE(reader.LoadFile(Provide({copy.GetNameUtf8(), source.string()})));
    EXPECT_EQ(reader.GetIntegerValue("Main", "Size", 0), 4);
    for (fs::path top = machine.Root(); exists(top / name);
         top /= "a") // the standard library deletes no path that long
        rename(top / name, top / "a");
}
} // namespace
