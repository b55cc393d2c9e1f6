#include <Platform/Win32.h>

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "support/Files.h"
#include "support/ScratchMachine.h"

// What the system's own reader of INI files answers, on every system.

namespace
{
std::string Read(const std::filesystem::path& file, DWORD size = 260)
{
    std::string buffer(size, '#');
    const DWORD length =
        ::GetPrivateProfileStringA("Main", "Key", "default", buffer.data(), size, file.string().c_str());
    EXPECT_EQ(buffer.at(length), '\0');
    EXPECT_EQ(buffer.find_first_not_of('#', length + 1), std::string::npos) << "written after the NUL";
    return buffer.substr(0, length);
}

TEST(PrivateProfile, HasValuesInSectionsAndDefaultsWithoutThem)
{
    // clang-format off
    const struct
    {
        const char* name;
        std::string_view content;
        std::string_view expected;
        DWORD size = 260;
    } rows[] = {
        {"letter case, ends of DOS", "[MAIN]\r\nkEY=\xC3\xBC\r\n",             "\xC3\xBC"},
        {"blanks around everything", " [Main] \n\tKey \t=  v ; w\t \n",         "v ; w"},
        {"comments",                 "[Main]\n;Key=1\n ; x\nKey=2",             "2"},
        {"quotes",                   "[Main]\nKey= \" v \" \n",                 " v "},
        {"a lone quote",             "[Main]\nKey=\"\n",                        "\""},
        {"no equals sign",           "[Main]\nKey\n",                           "default"},
        {"two keys, one empty",      "[Main]\nKey=\nKey=2\n",                   ""},
        {"two sections",             "[Main]\nx=1\n[Other]\n[Main]\nKey=2\n",   "default"},
        {"key outside the section",  "Key=1\n[Main]\n[Other]\nKey=1\n",         "default"},
        {"too long inside quotes",   "[Main]\nKey='12345'\n",                   "1234", 5},
        {"only room for the NUL",    "[Main]\nKey=1\n",                         "",     1},
    };
    // clang-format on
    const ScratchMachine machine;
    for (const auto& row : rows)
    {
        const std::filesystem::path file = machine.Root() / (row.name + std::string{".ini"});
        WriteFile(file, row.content);
        EXPECT_EQ(Read(file, row.size), row.expected) << row.name;
    }
    EXPECT_EQ(Read(machine.Root() / "none" / "none.ini"), "default");
    EXPECT_EQ(Read(machine.Root()), "default") << "a folder";
}
} // namespace
