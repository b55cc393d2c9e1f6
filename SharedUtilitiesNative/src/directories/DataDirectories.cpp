#include "DirectoryConfig.h"

#include <optional>
#include <stdexcept>

#include <Platform/Win32.h>

#include "CoreUtilities.h"
#include "UserSettingsConfig.h" // upward: the default connected project decides where project configuration is
#include "core/Paths.h"
#include "directories/OutputRoot.h"
#include "registry/ProductKeys.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
/// The product's folder in a folder of the shell, or `inOutput` below the root when running from output.
Utf8String DataFolder(const char* inOutput, int shellFolder, const char* source, const char* failure)
{
    if (const std::optional<Utf8String> output = OutputRoot())
        return *output + inOutput;
    char folder[MAX_PATH] = {};
    const bool isKnown = !FAILED(::SHGetFolderPathA(nullptr, shellFolder, nullptr, SHGFP_TYPE_CURRENT, folder));
    if (trace)
        trace->push_back(
            {Source::Kind::System, source, isKnown ? std::optional<std::string>{folder} : std::nullopt, isKnown});
    if (!isKnown)
        throw std::runtime_error(failure);
    // The shell's narrow text is taken for UTF-8: what is on users' disks was made that way.
    return QnFileName{folder}.AppendToPath(LR"(Quenlor\Engineering\FRAXO.Pro VANTIRE Edition\)").GetNameUtf8();
}

/// A folder of models: below "SampleDir" of the installation record, or below the root when running from output.
Utf8String ModelsFolder(const wchar_t* name)
{
    const std::optional<Utf8String> output = OutputRoot();
    QnFileName folder{output ? *output + R"(Samples\)" : InstallationRecord("SampleDir")};
    return folder.AppendToPath(name).GetNameUtf8();
}
} // namespace

Utf8String DirectoryConfig::GetProgramDataDirectory()
{
    return DataFolder(R"(AppData\)", CSIDL_COMMON_APPDATA, "the shell's folder of program data",
                      "Could not get ProgramData folder");
}

// Only the user's folder is created when it is missing: the machine's is the installer's business.
Utf8String DirectoryConfig::GetLocalAppDataDirectory()
{
    return DataFolder(R"(LocalAppData\)", CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE,
                      "the shell's folder of this user's data", "Could not get LocalAppData folder");
}

Utf8String DirectoryConfig::GetProfileFolderDirectory()
{
    return GetProgramDataDirectory();
}

Utf8String DirectoryConfig::GetFraxoSectionDatabaseDirectory()
{
    const Utf8String chosen = GetEnvironmentVariableValue("FRAXO_PRO_SECTIONS_DIRECTORY");
    if (!chosen.empty())
        return QnFileName{FixedPathOf(QnFileName{chosen})}.GetNameUtf8();
    const Attempt besideExecutable;
    const Utf8String found = IfExists(GetCurrentExeDirectory().AppendToPath(LR"(Sections\)"));
    if (!found.empty())
        return found;
    besideExecutable.PassOver();
    return GetProgramDataDirectory() + R"(Sections\)";
}

Utf8String DirectoryConfig::GetProjectConfigurationDirectory()
{
    const Attempt choice;
    const Utf8String project = UserSettingsConfig::GetDefaultConnectedProjectId();
    const bool isInUse = !project.empty() && UserSettingsConfig::UseDefaultConnectedProject();
    if (!isInUse)
        choice.PassOver(project.empty() ? 0 : 1); // that it is not to be used decides
    QnFileName directory = InFolder(GetLocalAppDataDirectory(), isInUse ? project : "Default");
    directory.AppendSeparator();
    return directory.GetNameUtf8();
}

// clang-format off
Utf8String DirectoryConfig::GetSampleModelsDirectory()       { return ModelsFolder(LR"(Sample Models\)"); }
Utf8String DirectoryConfig::GetVerificationModelsDirectory() { return ModelsFolder(LR"(Verification Models\)"); }
Utf8String DirectoryConfig::GetSeedModelsDirectory()         { return ModelsFolder(LR"(Seed Models\)"); }

Utf8String DirectoryConfig::GetPluginsDirectory()            { return GetFRAXOProRoot() + R"(FRAXO\Plugins\)"; }
Utf8String DirectoryConfig::GetLumConnectionHtmlDirectory()  { return GetFRAXOProRoot() + R"(FRAXO\LumConnection\Html\)"; }
Utf8String DirectoryConfig::GetRoseDatabaseDirectory()       { return GetFRAXOProRoot() + R"(Resource\CIS2Support\)"; }
Utf8String DirectoryConfig::GetRCDesignerDirectory()         { return GetFRAXOProRoot() + R"(FRAXO\RCDesigner\)"; }
Utf8String DirectoryConfig::GetHelpDirectory()               { return GetFRAXOProRoot() + R"(Help\)"; }
Utf8String DirectoryConfig::GetSectionWizardDirectory()      { return GetFRAXOProRoot() + R"(FRAXO\SectionWizard\)"; }
Utf8String DirectoryConfig::GetFRAXOProEngineDirectory()     { return GetFRAXOProRoot() + R"(FRAXO\FProFraxo\)"; }
Utf8String DirectoryConfig::GetFRAXOProEngineExePath()       { return GetFRAXOProEngineDirectory() + "FProFraxo.exe"; }
Utf8String DirectoryConfig::GetFRAXOProEngineStlExePath()    { return GetFRAXOProEngineDirectory() + "FProFraxoStl.exe"; }

Utf8String DirectoryConfig::GetLumConnectionConnectionTemplatesDirectory() { return GetConfigurationDirectory() + R"(LumConnection\ConnectionTemplates\)"; }
Utf8String DirectoryConfig::GetLumConnectionDatabaseDirectory()            { return GetConfigurationDirectory() + R"(LumConnection\Database\)"; }
Utf8String DirectoryConfig::GetLumConnectionImagesDirectory()              { return GetConfigurationDirectory() + R"(LumConnection\Images\)"; }

// "Plugins" below the root but "PlugIns" in the user's data: both spellings are on users' disks.
Utf8String DirectoryConfig::GetConfigurationDirectory()            { return GetLocalAppDataDirectory() + R"(Default\)"; }
Utf8String DirectoryConfig::GetEditorAppDataDirectory()            { return GetLocalAppDataDirectory() + R"(Default\Editor\)"; }
Utf8String DirectoryConfig::GetStrucLinkAppDataDirectory()         { return GetLocalAppDataDirectory() + R"(Default\PlugIns\StrucLink\)"; }
Utf8String DirectoryConfig::GetPipeLinkAppDataDirectory()          { return GetLocalAppDataDirectory() + R"(Default\PlugIns\PipeLink\)"; }
Utf8String DirectoryConfig::GetConnectionTagLinkAppDataDirectory() { return GetLocalAppDataDirectory() + R"(Default\PlugIns\ConnectionTagLink\)"; }
Utf8String DirectoryConfig::GetStWizardAppDataDirectory()          { return GetLocalAppDataDirectory() + R"(Default\StWizard\)"; }
Utf8String DirectoryConfig::GetCrashReportsDirectory()             { return GetLocalAppDataDirectory() + R"(CrashReports\)"; }

Utf8String DirectoryConfig::GetGBSteelDesignDirectory()            { return GetProgramDataDirectory() + R"(GBSteelDesign\)"; }
// clang-format on
} // namespace Quenlor::Fraxo::SharedUtilities::Native
