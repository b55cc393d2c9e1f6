#include "DirectoryConfig.h"

#include <gmock/gmock.h>

#include <Quenlor/QnFileName.h>

#include <filesystem>
#include <string>
#include <system_error>

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

using GetFRAXOProRoot = InstallationTest;

TEST_F(GetFRAXOProRoot, IsTheRecordedRootWithOneSeparatorAtItsEnd)
{
    Install(R"(C:\Fraxo Pro)");
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), R"(C:\Fraxo Pro\)");
    Install(R"(D:\Fraxo Pro\)"); // nothing is cached
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), R"(D:\Fraxo Pro\)");
}

TEST_F(GetFRAXOProRoot, IsEmptyWithoutARecordSoThatNothingBelowItLiesAtTheRootOfADrive)
{
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), "");
    Install("");
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), "");
}

TEST_F(GetFRAXOProRoot, IsTheVariablesValueWhenRunningFromOutput)
{
    Install(R"(C:\Fraxo Pro)");
    m_machine.SetEnvironment(RootVariable, ExecutableFolder());
    EXPECT_TRUE(DirectoryConfig::IsRunningFromOutput());
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), Utf8String{ExecutableFolder() + '\\'});
}

TEST_F(GetFRAXOProRoot, IsTheRecordedOneWhenTheVariableNamesAFolderElsewhere)
{
    Install(R"(C:\Fraxo Pro)");
    m_machine.SetEnvironment(RootVariable, m_machine.Folder("elsewhere"));
    EXPECT_FALSE(DirectoryConfig::IsRunningFromOutput());
    EXPECT_EQ(DirectoryConfig::GetFRAXOProRoot(), R"(C:\Fraxo Pro\)");
}

using IsRunningFromOutput = InstallationTest;

TEST_F(IsRunningFromOutput, ComparesPathsWhateverTheirSpelling)
{
    EXPECT_FALSE(DirectoryConfig::IsRunningFromOutput());
    const std::string folder = ExecutableFolder();
    for (const std::string& spelling : {folder, Capitals(folder), folder + R"(\.)", folder + R"(\sub\..\)"})
    {
        m_machine.SetEnvironment(RootVariable, spelling);
        EXPECT_TRUE(DirectoryConfig::IsRunningFromOutput()) << spelling;
    }
    m_machine.SetEnvironment(RootVariable, folder + R"(\sub)");
    EXPECT_FALSE(DirectoryConfig::IsRunningFromOutput());
}

TEST_F(IsRunningFromOutput, TakesDotsForTheFolderTheyName)
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

TEST_F(IsRunningFromOutput, FollowsSymbolicLinks)
{
    const std::filesystem::path link = m_machine.Root() / "link";
    std::error_code error; // not every system lets everybody make links
    create_directory_symlink(NativePath(ExecutableFolder()), link, error);
    m_machine.SetEnvironment(RootVariable, link.string());
    EXPECT_EQ(DirectoryConfig::IsRunningFromOutput(), !error);
}

using ExecutableWithoutAVersion = InstallationTest;

TEST_F(ExecutableWithoutAVersion, HasAllZeros)
{
    EXPECT_EQ(VersionConfig::GetProductVersion(), "00.00.00.00");
    EXPECT_EQ(VersionConfig::GetBuildNumber(), "00");
}
} // namespace
