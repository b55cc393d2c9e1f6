#include <cstdlib>
#include <fstream>

#include <DevFeaturesConfig.h>
#include <IniReader.h>
#include <RegistryHelper.h>
#include <sys/stat.h>

#include "Catalogue.h"
#include "Files.h"
#include "Measurement.h"
#include "core/Paths.h"
#include "stores/Registry.h"

namespace Benchmarks
{
namespace
{
using namespace Quenlor::Fraxo::SharedUtilities::Native;

constexpr const char* MachineHive = R"(Windows Registry Editor Version 5.00

[HKEY_LOCAL_MACHINE\Software\Classes\FraxoPro\22.00.00]
"RootDir"="/opt/fraxo/FRAXO Pro"
"SampleDir"="/opt/fraxo/Samples"
"UserName"="A. User"

[HKEY_LOCAL_MACHINE\Software\Classes\FraxoPro\22.00.00\Language]
"InstalledLanguages"=hex(7):65,00,6e,00,00,00,64,00,65,00,00,00,00,00

[HKEY_LOCAL_MACHINE\SOFTWARE\Quenlor\FraxoPro\22.00.00\Language]
"DefaultLanguage"="en"
)";

constexpr const char* UsersHive = R"(Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\SOFTWARE\Quenlor\FraxoPro\22.00.00\Language]
"CurrentLanguage"="de"

[HKEY_CURRENT_USER\Software\Quenlor Systems\FraxoPro\22.00.00\Configurations]
"UseDefaultProject"=dword:00000001
"DefaultProjectID"="4711"
"ThemeColor"="Dark"
)";

void MakeUserFiles()
{
    for (const FraxoInfo::Operation& operation : FraxoInfo::Catalogue())
    {
        if (!operation.userFile)
            continue;
        const std::filesystem::path file = PathOf(operation.userFile().path).ToNativePath();
        std::filesystem::create_directories(file.parent_path());
        std::ofstream stream{file};
        for (int i = 0; i < 60; ++i)
            stream << "Setting" << i << "=as long as settings mostly are\n";
        stream << "[DEV_FEATURES]\nFPRO_FEATURE_REVULYTICS=1\n";
    }
}

/// Makes this process one of a product that is installed and has been used before.
void UseInstallation()
{
    const std::filesystem::path folder = Workplace() / "installation";
    const bool isNew = std::filesystem::create_directories(folder / "registry");
    UseRegistry(folder / "registry");
    std::filesystem::create_directories(folder / "share"); // the machine's data are where they are by default
    ::setenv("LOCALAPPDATA", (folder / "share").c_str(), 1);
    if (!isNew)
        return;
    std::ofstream{folder / "registry" / "HKEY_LOCAL_MACHINE.reg"} << MachineHive;
    std::ofstream{UserHive(folder / "registry")} << UsersHive;
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) // programs have written both
        RegistryHelper::SetStringValue(root, "Software", "Written", "by a program");
    MakeUserFiles();
}

std::string ProductIni()
{
    return PathOf(FraxoProIni().path).ToNativePath();
}

void AddFeatureSwitch(Measurements& measurements)
{
    const std::string task = "IsDevFeatureEnabled";
    const auto ask = []() -> Operation
    {
        UseInstallation();
        return [] { Use(static_cast<std::size_t>(DevFeaturesConfig::IsDevFeatureEnabled(DevFeatureId::Revulytics))); };
    };
    const auto load = []() -> Operation
    {
        UseInstallation();
        return [path = ProductIni()]
        {
            IniReader reader;
            reader.LoadFile(path);
            };
    };
    measurements.push_back({task, task, Role::Ours, ask});
    measurements.push_back({task, "loading its file", Role::Floor, load});
}
} // namespace

void AddGetters(Measurements& measurements)
{
    const std::string task = "getter";
    for (const FraxoInfo::Operation& operation : FraxoInfo::Catalogue())
    {
        if (operation.name.starts_with("IsExeRunning")) // looks at every process of the machine
            continue;
        const auto begin = [=]() -> Operation
        {
            UseInstallation();
            return [ask = operation.ask] { Use(ask().index()); };
        };
        measurements.push_back({task, std::string{operation.name}, Role::Ours, begin});
    }
    const auto stat = []() -> Operation
    {
        UseInstallation();
        return [path = ProductIni()]
        {
            struct stat status;
            Use(static_cast<std::size_t>(::stat(path.c_str(), &status)));
            };
    };
    measurements.push_back({task, "stat", Role::Floor, stat});
    AddFeatureSwitch(measurements);
}
} // namespace Benchmarks
