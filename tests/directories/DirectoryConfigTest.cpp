#include "DirectoryConfig.h"

#include <gmock/gmock.h>

#include <Quenlor/QnFileName.h>

#include <string>

#include "VersionConfig.h"
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
    WString wide{text.c_str(), false};
    QnFileName name;
    name.SetName(wide.ToUpperCase().c_str());
    return name.GetNameUtf8().ToStdString();
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

using ExecutableWithoutAVersion = InstallationTest;

TEST_F(ExecutableWithoutAVersion, HasAllZeros)
{
    EXPECT_EQ(VersionConfig::GetProductVersion(), "00.00.00.00");
    EXPECT_EQ(VersionConfig::GetBuildNumber(), "00");
}
} // namespace
