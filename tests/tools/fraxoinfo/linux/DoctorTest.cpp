#include "Doctor.h"

#include <sys/stat.h>

#include <gmock/gmock.h>

#include "Commands.h"
#include "support/OrdinaryUser.h"
#include "tools/fraxoinfo/Installation.h"

namespace
{
using namespace FraxoInfo;
namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

class DoctorOnLinux : public Installation
{
protected:
    const fs::path m_registry = m_machine.Root() / "Registry";
};

TEST_F(DoctorOnLinux, FindsFaultsOfRegistryFilesWithoutQuotingTheirData)
{
    const fs::path hive = m_registry / "HKEY_LOCAL_MACHINE.reg";
    const std::string healthy = ReadFile(hive), mail = "\"Mail\"=\"kim@example.com\n";
    WriteFile(hive, healthy + mail);
    WriteFile(hive.string() + ".skipped", mail);
    EXPECT_THAT(Format(Examine()), AllOf(HasSubstr("HKEY_LOCAL_MACHINE.reg is skipped"), HasSubstr("\"Mail\"=..."),
                                         HasSubstr("were skipped when it was last written"), Not(HasSubstr("kim@"))));

    WriteFile(hive, healthy.substr(healthy.find('\n') + 1));
    EXPECT_THAT(Format(Examine()), AllOf(HasSubstr("is not read at all"), Not(HasSubstr("RootDir="))));
    remove(hive);
    create_directory(hive);
    EXPECT_THAT(Format(Examine()), HasSubstr("HKEY_LOCAL_MACHINE.reg cannot be read"));
}

TEST_F(DoctorOnLinux, NamesWhatThisUserCannotWrite)
{
    WriteLogSetup("type='file' path='Logs/a.log'");
    const auto setModes = [this](fs::perms mode)
    {
        for (const fs::path& folder : {m_registry, m_machine.Root() / "LocalAppData", MachineData()})
            permissions(folder, mode);
    };
    setModes(fs::perms{0555});
    {
        const OrdinaryUser user{m_machine.Root()};
        EXPECT_THAT(Format(Examine()),
                    AllOf(HasSubstr("cannot write the registry file " + m_registry.string()),
                          HasSubstr("cannot write to the data folder " + m_bases.userData),
                          HasSubstr("log file cannot be written: " + (MachineData() / "Logs/a.log").string())));
    }
    setModes(fs::perms{0755});
}

TEST_F(DoctorOnLinux, ReportsWithPersonalDataAreOnlyTheOwners)
{
    ::umask(0);
    const std::string file = (m_machine.Root() / "report.html").string();
    WriteFile(file, "one that all can read");
    const char* const arguments[] = {"fraxoinfo", "report", "--personal", "--force", file.c_str()};
    EXPECT_EQ(FraxoInfo::Run(5, arguments), 0);
    EXPECT_EQ(fs::status(file).permissions(), fs::perms{0600});
}
} // namespace
