#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>

#include "IniReader.h"
#include "logging/Configuration.h"
#include "reliability/Attacks.h"
#include "support/Files.h"
#include "support/ScratchMachine.h"

// What each reader of files answers when it gets a file of another kind, or none at all.

namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;
namespace fs = std::filesystem;
using namespace std::string_literals;
using ::testing::HasSubstr;

constexpr std::size_t TenMegabytes = std::size_t{10} * 1024 * 1024;
constexpr char Nothing[] = "default";

struct BadFile
{
    const char* name;
    void (*make)(const fs::path& path);
    const char* value;        ///< Of the key "Key" in the section "Main".
    bool exists = true;       ///< Then it is taken for an INI file.
    const char* fault = "";   ///< As a logging configuration; none when that is taken as missing.
    const char* message = ""; ///< As the default of a user's file; none when it can be copied.
};

constexpr char NotFound[] = "bad file not found. The installation of FRAXO.Pro may be corrupt.";
constexpr char NotCopied[] = "bad file could not be copied.";

// clang-format off
const BadFile Files[] = {
    {"a line of 10 MB", [](const fs::path& path) { WriteFile(path, "[Main]\nLong=" + std::string(TenMegabytes, 'x') + "\nKey=v\n"); }, "v", true, "must be <logging>"},
    {"10 MB without an end of line", [](const fs::path& path) { WriteFile(path, "[Main]=" + std::string(TenMegabytes, 'x')); }, Nothing, true, "must be <logging>"},
    {"elements in each other", [](const fs::path& path) { std::string text; for (int i = 0; i < 100000; ++i) text += "<a>"; WriteFile(path, text); }, Nothing, true, "mismatch"},
    {"a program", [](const fs::path& path) { WriteFile(path, "\x7F" "ELF\2\1\1\0\0\n\xFF\xFE\n[Main]\nKey=v\n"s); }, "v", true, "not in UTF-8"},
    {"nothing", [](const fs::path& path) { WriteFile(path, ""); }, Nothing, true, "must be <logging>"},
    {"a folder", [](const fs::path& path) { create_directory(path); }, Nothing, true, "the file cannot be read", NotCopied},
    {"a link to nowhere", [](const fs::path& path) { create_symlink("nowhere", path); }, Nothing, false, "", NotFound},
    {"a link to itself", [](const fs::path& path) { create_symlink(path.filename(), path); }, Nothing, false, "the file cannot be read", NotFound},
    {"missing", [](const fs::path&) {}, Nothing, false, "", NotFound},
};
// clang-format on

std::string FaultOf(const fs::path& path)
{
    std::vector<Quenlor::NativeLogging::Fault> faults;
    EXPECT_FALSE(ReadConfiguration(Quenlor::QnFileName{path.wstring()}, faults));
    return faults.empty() ? "" : faults.front().text;
}

TEST(BadFiles, GetTheDocumentedAnswerOfEachReader)
{
    for (const BadFile& row : Files)
    {
        SCOPED_TRACE(row.name);
        const ScratchMachine machine;
        const fs::path path = machine.Root() / "bad";
        try
        {
            row.make(path);
        }
        catch (const fs::filesystem_error&) // Windows lets only some users make links
        {
            continue;
        }
        IniReader reader;
        EXPECT_EQ(reader.LoadFile(path.wstring()), row.exists);
        EXPECT_EQ(reader.GetStringValue("Main", "Key", Nothing), row.value);
        EXPECT_EQ(reader.LoadSection(path.wstring(), "Main"), row.exists);
        EXPECT_EQ(reader.GetStringValue("Main", "Key", Nothing), row.value);
        EXPECT_THAT(FaultOf(path),
                    row.fault[0] ? ::testing::Matcher<std::string>{HasSubstr(row.fault)} : ::testing::Eq(""));
        const std::string folder = machine.Folder("");
        EXPECT_EQ(MessageOf({folder + R"(user\copy)", folder + "bad"}), row.message);
    }
}
} // namespace
