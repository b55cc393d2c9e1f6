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
public:
    static std::string Problems()
    {
        std::string all;
        for (const Finding& finding : Examine())
            all += finding.problem + '|' + finding.remedy + '\n';
        return all;
    }

    const fs::path m_registry = m_machine.Root() / "Registry";
    const fs::path m_machinesHive = m_registry / "HKEY_LOCAL_MACHINE.reg";
    const fs::path m_usersHive = m_registry / "HKEY_CURRENT_USER.reg";
};

TEST_F(DoctorOnLinux, FindsFaultsOfRegistryFilesWithoutQuotingTheirData)
{
    const std::string healthy = ReadFile(m_machinesHive);
    WriteFile(m_machinesHive, healthy + "\"Mail\"=\"kim@example.com\n");
    EXPECT_THAT(Problems(), AllOf(HasSubstr("HKEY_LOCAL_MACHINE.reg is skipped"), HasSubstr("\"Mail\"=..."),
                                  Not(HasSubstr("kim@"))));

    WriteFile(m_machinesHive, healthy);
    WriteFile(m_machinesHive.string() + ".skipped", "\"Mail\"=\"kim@example.com\n");
    EXPECT_THAT(Problems(), AllOf(HasSubstr("were skipped when it was last written"), Not(HasSubstr("kim@"))));

    WriteFile(m_machinesHive, healthy.substr(healthy.find('\n') + 1));
    EXPECT_THAT(Problems(),
                AllOf(HasSubstr("is not read at all"), HasSubstr("has to be: Windows Registry Editor Version 5.00"),
                      Not(HasSubstr("RootDir="))));

    remove(m_usersHive);
    create_directory(m_usersHive);
    EXPECT_THAT(Problems(), HasSubstr("HKEY_CURRENT_USER.reg cannot be read"));
}

TEST_F(DoctorOnLinux, NamesWhatThisUserCannotWrite)
{
    const fs::path data = m_machine.Root() / "LocalAppData", log = MachineData() / "Logs/a.log";
    WriteFile(MachineData() / "FraxoPro.log.xml", "<logging><appender name='f' type='file' path='Logs/a.log'/><root "
                                                  "level='info'><appender-ref ref='f'/></root></logging>");
    const auto allow = [&](fs::perms writing)
    {
        for (const fs::path& folder : {m_registry, data, MachineData()})
            permissions(folder, fs::perms{0555} | writing);
    };
    allow(fs::perms::none);
    {
        const OrdinaryUser user{m_machine.Root()};
        EXPECT_THAT(Problems(), AllOf(HasSubstr("cannot write the registry file " + m_usersHive.string()),
                                      HasSubstr("cannot write to the data folder " + m_bases.userData),
                                      HasSubstr("log file cannot be written: " + log.string())));
    }
    allow(fs::perms::owner_write);
    EXPECT_EQ(Problems(), "");
    permissions(m_machine.Root(), fs::perms::owner_all);
}

TEST_F(DoctorOnLinux, ReportsWithPersonalDataAreOnlyTheOwners)
{
    ::umask(0);
    const std::string file = (m_machine.Root() / "report.html").string();
    const auto modeOf = [&](std::vector<const char*> arguments)
    {
        arguments.insert(arguments.begin(), {"fraxoinfo", "report", "--force", file.c_str()});
        EXPECT_EQ(FraxoInfo::Run(static_cast<int>(arguments.size()), arguments.data()), 0);
        return fs::status(file).permissions();
    };
    EXPECT_EQ(modeOf({}), fs::perms{0666});
    EXPECT_EQ(modeOf({"--personal"}), fs::perms{0600}) << "in place of one that all can read";
}
} // namespace
