#pragma once

#include "Answer.h"
#include "support/Files.h"
#include "support/InstallationTest.h"

/// A small installation that lacks nothing: two languages, and the defaults of all files that users get copies of.
class Installation : public InstallationTest
{
public:
    using InstallationTest::Install; // damage is done from outside
    using InstallationTest::m_machine;
    using InstallationTest::RunFromOutput;

    Installation()
    {
        m_machine.WriteData(HKEY_CLASSES_ROOT, InstallationKey + R"(\Language)", "InstalledLanguages", REG_MULTI_SZ,
                            {"de\0en\0", 7});
        Choose(HKEY_LOCAL_MACHINE, "DefaultLanguage", "en");
        for (const char* const language : {"de", "en"})
            WriteFile(Root() / "Resource/Language" / language / "Offices.xml", "default");
        for (const FraxoInfo::Operation& operation : FraxoInfo::Catalogue())
        {
            if (operation.userFile)
                WriteFile(NativePath(operation.userFile().installedDefault.ToStdString()), "[SECTION]\nkey=value\n");
        }
        WriteFile(MachineData() / "FraxoPro.log.xml", "<logging><appender name='n' type='console'/><root level='info'>"
                                                      "<appender-ref ref='n'/></root></logging>");
    }

    std::filesystem::path Root() const { return NativePath(m_bases.root); }
    std::filesystem::path MachineData() const { return NativePath(m_bases.machineData); }
    std::filesystem::path UserDefaults() const { return NativePath(m_bases.userData) / "Default"; }

    void Choose(HKEY root, const char* name, const char* language) const
    {
        m_machine.WriteText(root, VendorKey + R"(\Language)", name, language);
    }

    const Bases m_bases = Install();
};
