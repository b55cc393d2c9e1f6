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
        m_before = ReadFile(m_place);
        if (kind == ReadOnly)
            permissions(m_place, fs::perms::owner_read);
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
        if (m_kind == ReadOnly)
            permissions(m_place, fs::perms::all);
        EXPECT_EQ(ReadFile(m_place), m_before);
        std::error_code error;
        EXPECT_EQ(fs::remove(m_place, error), m_kind != Missing) << "or the folder is not empty";
    }

private:
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
        EXPECT_EQ(CountAndAgeTemporaryFiles(m_folder), 0U);
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

TEST_F(RefusedFiles, IncludeNoLongPathOfForeignLetters)
{
    WriteFile(m_source, "[Main]\nSize=4\n");
    const std::wstring name(60, L'\u6f22');
    const fs::path profile = m_folder / name / name / name / name / name;
    const QnFileName copy{(profile / "User.ini").wstring()}, log{(profile / "a.log").wstring()};
    IniReader reader;
    EXPECT_TRUE(reader.LoadFile(Provide({copy.GetNameUtf8(), m_source.string()})));
    EXPECT_EQ(reader.GetIntegerValue("Main", "Size", 0), 4);
    auto sink = MakeSink({.name = "a", .type = AppenderType::File, .pattern = "%v"}, log, "");
    Log(sink, "one", 1);
    sink.reset();
    EXPECT_EQ(ReadFile(log.ToNativePath()), "one\r\n");
    for (fs::path top = m_folder; exists(top / name); top /= "a") // the standard library deletes no path that long
        rename(top / name, top / "a");
}
} // namespace
