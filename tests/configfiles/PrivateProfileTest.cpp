#include <Platform/Win32.h>

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "support/Files.h"
#include "support/ScratchMachine.h"

// What the system's own reader of INI files answers, on every system.

namespace
{
struct Row
{
    const char* name;
    std::string_view content;
    std::string_view expected; // of key "Key" in section "Main", by default "default"
    DWORD size = 260;
};

// clang-format off
constexpr Row Rows[] = {
    {"letter case",              "[MAIN]\nkEY=v\n",                         "v"},
    {"line ends of DOS",         "[Main]\r\nKey=v\r\n",                     "v"},
    {"no last line end",         "[Main]\nKey=v",                           "v"},
    {"bytes beyond ASCII",       "[Main]\nKey=\xC3\xBC\n",                  "\xC3\xBC"},
    {"blanks around everything", " [Main] \n\tKey \t=  v w\t \n",           "v w"},
    {"semicolon in a value",     "[Main]\nKey=v ; w\n",                     "v ; w"},
    {"comments",                 "[Main]\n;Key=1\n ; x\nKey=2\n",           "2"},
    {"quotes",                   "[Main]\nKey= \" v \" \n",                 " v "},
    {"apostrophes",              "[Main]\nKey='v'\n",                       "v"},
    {"two pairs of quotes",      "[Main]\nKey=\"\"v\"\"\n",                 "\"v\""},
    {"a lone quote",             "[Main]\nKey=\"\n",                        "\""},
    {"empty value",              "[Main]\nKey=\n",                          ""},
    {"no equals sign",           "[Main]\nKey\n",                           "default"},
    {"two keys",                 "[Main]\nKey=1\nKey=2\n",                  "1"},
    {"two sections",             "[Main]\nx=1\n[Other]\n[Main]\nKey=2\n",   "default"},
    {"key of another section",   "[Main]\n[Other]\nKey=1\n",                "default"},
    {"key before all sections",  "Key=1\n[Main]\n",                         "default"},
    {"empty file",               "",                                        "default"},
    {"too long a value",         "[Main]\nKey=12345\n",                     "1234", 5},
    {"the longest value",        "[Main]\nKey=1234\n",                      "1234", 5},
    {"too long inside quotes",   "[Main]\nKey='12345'\n",                   "1234", 5},
    {"room for the NUL alone",   "[Main]\nKey=1\n",                         "",     1},
    {"too long a default",       "",                                        "defa", 5},
};
// clang-format on

class PrivateProfile : public ::testing::Test
{
protected:
    static std::string Read(const std::filesystem::path& file, DWORD size = 260)
    {
        std::string buffer(size, '#');
        const DWORD length =
            ::GetPrivateProfileStringA("Main", "Key", "default", buffer.data(), size, file.string().c_str());
        EXPECT_LT(length, size);
        EXPECT_EQ(buffer.at(length), '\0');
        EXPECT_EQ(buffer.find_first_not_of('#', length + 1), std::string::npos) << "written behind the NUL";
        return buffer.substr(0, length);
    }

    ScratchMachine m_machine;
};

TEST_F(PrivateProfile, HasValuesInSections)
{
    for (const Row& row : Rows)
    {
        const std::filesystem::path file = m_machine.Root() / (row.name + std::string{".ini"});
        WriteFile(file, row.content);
        EXPECT_EQ(Read(file, row.size), row.expected) << row.name;
    }
}

TEST_F(PrivateProfile, HasDefaultsWithoutAFile)
{
    EXPECT_EQ(Read(m_machine.Root() / "none.ini"), "default");
    EXPECT_EQ(Read(m_machine.Root() / "none" / "none.ini"), "default");
}

TEST_F(PrivateProfile, HasDefaultsWhenTheFileIsAFolder)
{
    EXPECT_EQ(Read(m_machine.Root()), "default");
}
} // namespace
