#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "DirectoryConfig.h"
#include "VersionConfig.h"
#include "support/ScratchMachine.h"

// What carries the number of the release, made from the product's own: a new release changes no test.

inline const std::string Release =
    Quenlor::Fraxo::SharedUtilities::Native::VersionConfig::GetReleaseNumber().ToStdString();
inline const std::string ProductIni = "FraxoPro" + Release + ".ini";

inline const std::string InstallationKey = R"(FraxoPro\)" + Release;            ///< Of the installation record.
inline const std::string VendorKey = R"(SOFTWARE\Quenlor\FraxoPro\)" + Release; ///< What installers and support set.
inline const std::string SettingsKey = R"(Software\Quenlor Systems\FraxoPro\)" + Release; ///< The user's own settings.

/// The three folders of an installation, spelled as the library spells them.
struct Bases
{
    std::string root, machineData, userData;
};

/// A test on a machine where the product may be installed. Uses HKEY_CLASSES_ROOT.
class InstallationTest : public ::testing::Test
{
protected:
    /// Writes the record that an installer leaves.
    void Install(std::string_view root) const
    {
        m_machine.WriteText(HKEY_CLASSES_ROOT, InstallationKey, "RootDir", root);
    }

    /// Installs the product in a folder of this machine.
    Bases Install() const
    {
        const std::string root = m_machine.Folder("Fraxo Pro");
        Install(root);
        return {root, m_machine.ProductFolder(ShellFolder::ProgramData),
                m_machine.ProductFolder(ShellFolder::LocalAppData)};
    }

    /// From now on this program runs from output; the root is the executable's folder.
    Bases RunFromOutput()
    {
        using Quenlor::Fraxo::SharedUtilities::Native::DirectoryConfig;
        const std::string folder = DirectoryConfig::GetCurrentExeDirectory().GetNameUtf8().ToStdString();
        m_machine.SetEnvironment("FRAXO_PRO_ROOT_DIRECTORY", folder);
        return {folder + R"(\)", folder + R"(\AppData\)", folder + R"(\LocalAppData\)"};
    }

    void UseProject(const char* id, bool isInUse) const
    {
        const std::string key = SettingsKey + R"(\Configurations)";
        m_machine.WriteText(HKEY_CURRENT_USER, key, "DefaultProjectID", id);
        m_machine.WriteNumber(HKEY_CURRENT_USER, key, "UseDefaultProject", isInUse);
    }

    ScratchMachine m_machine{ScratchMachine::ClassesRoot::Used};
};
