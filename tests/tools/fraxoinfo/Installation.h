#pragma once

#include <gtest/gtest.h>

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
        WriteLogSetup("type='console'");
    }

    std::filesystem::path Root() const { return NativePath(m_bases.root); }
    std::filesystem::path MachineData() const { return NativePath(m_bases.machineData); }
    std::filesystem::path UserDefaults() const { return NativePath(m_bases.userData) / "Default"; }

    void Choose(HKEY root, const char* name, const char* language) const
    {
        m_machine.WriteText(root, VendorKey + R"(\Language)", name, language);
    }

    void WriteLogSetup(const std::string& appender) const
    {
        WriteFile(MachineData() / "FraxoPro.log.xml",
                  "<logging><appender name='a' " + appender +
                      "/><root level='info'><appender-ref ref='a'/></root></logging>");
    }

    const Bases m_bases = Install();
};

/// All answers, with whether what they name exists. Without whether a program is running: another test may be running
/// fraxoinfo.
inline std::string SettledAnswers(bool provide)
{
    std::vector<FraxoInfo::Answer> answers = FraxoInfo::AskForEverything(provide);
    std::erase_if(answers, [](const auto& answer) { return answer.operation->name.starts_with("IsExeRunning"); });
    return Format(answers);
}
