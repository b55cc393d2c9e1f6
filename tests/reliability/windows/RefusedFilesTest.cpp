#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include <Platform/Win32.h>
#include <Quenlor/QnFileName.h>
#include <gmock/gmock.h>
#include <sddl.h>

#include "IniReader.h"
#include "configfiles/UserFile.h"
#include "logging/Sinks.h"
#include "reliability/Attacks.h"
#include "reliability/windows/OpenHandles.h"
#include "support/Files.h"
#include "support/KnownDifferences.h"
#include "support/ScratchMachine.h"

// Files that Windows refuses to open, make or replace, for reasons that occur on real machines.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
using namespace Quenlor::NativeLogging;
using Quenlor::QnFileName;
using Quenlor::QnFileNameStatus;
namespace fs = std::filesystem;

enum Kind
{
    File,
    Missing,
    Folder,
    ReadOnly, ///< a file
    Held,     ///< a file that a program has open and shares with no other
    Sealed,   ///< a folder in which nothing can be made, as in a profile that cannot be written
};

/// What is at a place until the end of its scope, when it must still be the same.
class Obstacle final
{
public:
    Obstacle(Kind kind, fs::path place) : m_kind{kind}, m_place{std::move(place)}
    {
        if (kind == Folder || kind == Sealed)
            create_directories(m_place);
        else if (kind != Missing)
            WriteFile(m_place, "before");
        if (kind == ReadOnly)
            ::SetFileAttributesW(m_place.c_str(), FILE_ATTRIBUTE_READONLY);
        m_before = Content();
        if (kind == Held)
            m_handle = ::CreateFileW(m_place.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        if (kind == Sealed)
            SetRights("D:P(D;;DCLC;;;WD)(A;;FA;;;WD)"); // to make files and folders is denied to everyone
    }
    Obstacle(const Obstacle&) = delete;
    Obstacle& operator=(const Obstacle&) = delete;
    ~Obstacle()
    {
        if (m_kind == Held)
            ::CloseHandle(m_handle);
        if (m_kind == Sealed)
            SetRights("D:(A;;FA;;;WD)");
        ::SetFileAttributesW(m_place.c_str(), FILE_ATTRIBUTE_NORMAL);
        EXPECT_EQ(Content(), m_before);
        remove(m_place);
    }

private:
    std::string Content() const { return IsEmptyFolder(m_place) ? "empty folder" : ReadFile(m_place); }

    void SetRights(const char* rights) const
    {
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        ::ConvertStringSecurityDescriptorToSecurityDescriptorA(rights, SDDL_REVISION_1, &descriptor, nullptr);
        EXPECT_TRUE(::SetFileSecurityW(m_place.c_str(), DACL_SECURITY_INFORMATION, descriptor));
        ::LocalFree(descriptor);
    }

    const Kind m_kind;
    const fs::path m_place;
    HANDLE m_handle = nullptr;
    std::string m_before;
};

class RefusedFiles : public ::testing::Test
{
protected:
    static bool IsAccepted(Kind kind)
    {
        return (kind == ReadOnly && KnownDifference("read-only")) || (kind == Sealed && KnownDifference("sealed"));
    }

    static void Log(const std::unique_ptr<Sink>& sink, const char* text, int second)
    {
        sink->Log({LogLevel::Error, "", text, std::chrono::system_clock::time_point{std::chrono::seconds{second}}});
    }

    const ScratchMachine m_machine;
    const fs::path m_folder = m_machine.Root() / "files";
    const fs::path m_source = m_folder / "Default.ini";
};

TEST_F(RefusedFiles, LeaveNoCopyAndNoHandle)
{
    constexpr char notFound[] = "Default.ini file not found. The installation of FRAXO.Pro may be corrupt.";
    constexpr char noFolder[] = "Default.ini file target directory could not be created.";
    constexpr char notCopied[] = "Default.ini file could not be copied.";
    const fs::path beside = m_folder / "User.ini", inNew = m_folder / "new" / "User.ini", away = "Q:/a/User.ini";
    const fs::path data = m_folder / "Local AppData", inData = data / "User.ini", below = data / "a" / "User.ini";
    struct Case
    {
        Kind source, obstacle;
        fs::path place, copy; ///< of the obstacle, and of the copy
        const char* message;
    };
    MessageOf({beside.string(), m_source.string()}); // what the first call loads stays open
    for (const auto& [atSource, kind, place, copy, message] : {
             Case{Missing, Missing, beside, beside, notFound},
             Case{Folder, Missing, beside, beside, notCopied},
             Case{Held, Missing, inNew, inNew, notCopied},
             Case{File, Missing, away, away, noFolder},
             Case{File, File, data, below, noFolder},
             Case{File, Sealed, data, inData, notCopied},
             Case{File, Sealed, data, below, noFolder},
             Case{File, ReadOnly, beside, beside, ""},
             Case{File, Held, beside, beside, ""},
             Case{File, Folder, beside, beside, ""},
         })
    {
        if (IsAccepted(kind))
            continue;
        SCOPED_TRACE(::testing::Message() << atSource << ' ' << kind << ' ' << copy);
        const Obstacle source{atSource, m_source}, obstacle{kind, place};
        const int before = OpenHandles();
        EXPECT_EQ(MessageOf({copy.string(), m_source.string()}), message);
        EXPECT_EQ(QnFileName::QnCopyFile(m_source.c_str(), copy.c_str(), true), QnFileNameStatus::Failed);
        EXPECT_EQ(OpenHandles(), before);
        EXPECT_TRUE(TemporaryFiles(m_folder).empty());
    }
}

TEST_F(RefusedFiles, AreCountedInTheLogLater)
{
    const fs::path folder = m_folder / "Logs", log = folder / "a.log";
    for (const Kind kind : {Folder, ReadOnly, Held, Sealed})
    {
        if (IsAccepted(kind))
            continue;
        SCOPED_TRACE(kind);
        auto sink = MakeSink({.name = "a", .type = AppenderType::File, .pattern = "%v"}, QnFileName{log.wstring()}, "");
        ::testing::internal::CaptureStderr();
        {
            const Obstacle obstacle{kind, kind == Sealed ? folder : log};
            Log(sink, "1", 10);
            const int before = OpenHandles();
            Log(sink, "2", 20);
            EXPECT_EQ(OpenHandles(), before);
        }
        Log(sink, "3", 30);
        EXPECT_THAT(::testing::internal::GetCapturedStderr(), ::testing::StartsWith("cannot open"));
        EXPECT_THAT(ReadFile(log), ::testing::MatchesRegex("lost records: 2 .*\r\n3\r\n"));
        sink.reset();
        fs::remove_all(folder);
    }
}

TEST_F(RefusedFiles, DoNotIncludeLongPathsAndForeignLetters)
{
    WriteFile(m_source, "[Main]\nSize=4\n");
    const std::wstring name(60, L'p'), level = L'\\' + name;
    for (const std::wstring& profile :
         {m_folder.wstring() + level + level + level + level, m_folder.wstring() + L"\\\u0395\u03bb \u6f22"})
    {
        const Quenlor::Utf8String path =
            Provide({QnFileName{profile + L"\\User.ini"}.GetNameUtf8(), m_source.string()});
        IniReader reader;
        EXPECT_TRUE(reader.LoadFile(path));
        EXPECT_EQ(reader.GetIntegerValue("Main", "Size", 0), 4);
        const QnFileName log{profile + L"\\Logs\\a.log"}, full{profile + L"\\Logs\\a.1.log"};
        auto sink = MakeSink(
            {.name = "a", .type = AppenderType::RollingFile, .pattern = "%v", .maxSize = 4, .count = 1}, log, "");
        Log(sink, "one", 1);
        Log(sink, "two", 2);
        sink.reset();
        EXPECT_EQ(ReadFile(full.ToNativePath()) + ReadFile(log.ToNativePath()), "one\r\ntwo\r\n");
    }
    for (fs::path top = m_folder; exists(top / name); top /= "a") // the standard library deletes no path that long
        rename(top / name, top / "a");
}
} // namespace
