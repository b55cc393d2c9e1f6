#include "DirectoryConfig.h"

#include <gmock/gmock.h>

#include <Quenlor/QnFileName.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "VersionConfig.h"
#include "support/Files.h"
#include "support/InstallationTest.h"
#include "support/Printers.h"

namespace
{
using Quenlor::QnFileName;
using Quenlor::Utf8String;
using Quenlor::WString;
using Quenlor::Fraxo::SharedUtilities::Native::DirectoryConfig;
using Quenlor::Fraxo::SharedUtilities::Native::VersionConfig;

constexpr char RootVariable[] = "FRAXO_PRO_ROOT_DIRECTORY";

/// The folder of this test program, which a build output root has to contain.
std::string ExecutableFolder()
{
    return DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8().ToStdString();
}

std::string Capitals(std::string text)
{
    return QnFileName{WString{text.c_str(), false}.ToUpperCase()}.GetNameUtf8().ToStdString();
}

using RootDirectory = InstallationTest;

TEST_F(RootDirectory, IsTheRecordedOneWithOneSeparatorAtItsEnd)
{
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), "") << "nothing below it is at the root of a drive";
    for (const auto& [recorded, root] :
         {std::pair{"", ""}, std::pair{R"(C:\Fraxo Pro)", R"(C:\Fraxo Pro\)"}, std::pair{R"(D:\Pro\)", R"(D:\Pro\)"}})
    {
        Install(recorded);
        EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), root); // nothing is cached
    }
}

TEST_F(RootDirectory, IsTheVariablesWhenThisProgramRunsFromThere)
{
    Install(R"(C:\Fraxo Pro)");
    EXPECT_FALSE(DirectoryConfig::IsRunningFromOutput());
    const std::string folder = ExecutableFolder();
    for (const std::string& spelling : {folder, Capitals(folder), folder + R"(\.)", folder + R"(\sub\..\)"})
    {
        m_machine.SetEnvironment(RootVariable, spelling);
        EXPECT_TRUE(DirectoryConfig::IsRunningFromOutput()) << spelling;
    }
    m_machine.SetEnvironment(RootVariable, folder);
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), Utf8String{folder + '\\'});
    for (const std::string& elsewhere : {m_machine.Folder("elsewhere"), folder + R"(\sub)"})
    {
        m_machine.SetEnvironment(RootVariable, elsewhere);
        EXPECT_FALSE(DirectoryConfig::IsRunningFromOutput());
        EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), R"(C:\Fraxo Pro\)");
    }
}

TEST_F(RootDirectory, MayBeNamedByDots)
{
    const std::filesystem::path folder = NativePath(ExecutableFolder());
    for (const char* const dots : {".", R"(sub\..)"})
    {
        m_machine.SetEnvironment(RootVariable, dots);
        std::filesystem::current_path(m_machine.Root());
        EXPECT_FALSE(DirectoryConfig::IsRunningFromOutput()) << dots;
        std::filesystem::current_path(folder);
        EXPECT_TRUE(DirectoryConfig::IsRunningFromOutput()) << dots;
    }
}

TEST_F(RootDirectory, MayBeALink)
{
    const std::filesystem::path link = m_machine.Root() / "link";
    std::error_code error; // not every system lets everybody make links
    create_directory_symlink(NativePath(ExecutableFolder()), link, error);
    m_machine.SetEnvironment(RootVariable, link.string());
    EXPECT_EQ(DirectoryConfig::IsRunningFromOutput(), !error);
}

TEST(ProductVersion, IsAllZerosWithoutAResource)
{
    EXPECT_EQ(VersionConfig::GetProductVersion(), "00.00.00.00");
}
} // namespace
