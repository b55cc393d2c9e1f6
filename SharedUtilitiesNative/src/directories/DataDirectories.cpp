#include "DirectoryConfig.h"

#include <optional>
#include <stdexcept>
#include <string_view>

#include <Platform/Win32.h>

#include "CoreUtilities.h"
#include "UserSettingsConfig.h" // upward: the default connected project decides where project configuration lies
#include "core/Paths.h"
#include "directories/OutputRoot.h"
#include "registry/InstallationRecord.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
/// The fixed end of a folder's path. Reaching the throw is a compile error in the line that has the literal.
struct FolderTail
{
    consteval FolderTail(const char* literal) : text{literal}
    {
        const std::string_view view{literal};
        if (view.empty() || view.front() == '\\' || view.back() != '\\')
            throw "a folder tail is relative and ends in a separator";
    }
    const char* text;
};

Utf8String BelowRoot(FolderTail tail)
{
    return DirectoryConfig::GetFRAXOProRoot() + tail.text;
}

Utf8String InMachineData(FolderTail tail)
{
    return DirectoryConfig::GetProgramDataDirectory() + tail.text;
}

Utf8String InUserData(FolderTail tail)
{
    return DirectoryConfig::GetLocalAppDataDirectory() + tail.text;
}

Utf8String InConfiguration(FolderTail tail)
{
    return DirectoryConfig::GetConfigurationDirectory() + tail.text;
}

const char* NameOf(int shellFolder)
{
    return shellFolder == CSIDL_COMMON_APPDATA ? "the shell's folder of program data"
                                               : "the shell's folder of this user's data";
}

/// The product's folder below a shell folder.
Utf8String ProductFolderBelow(int shellFolder, const char* failure)
{
    char folder[MAX_PATH] = {};
    const bool isKnown = !FAILED(::SHGetFolderPathA(nullptr, shellFolder, nullptr, SHGFP_TYPE_CURRENT, folder));
    Note(
        [&]
        {
        return Source{Source::Kind::System, NameOf(shellFolder),
                      isKnown ? std::optional{std::string{folder}} : std::nullopt, isKnown};
    });
    if (!isKnown)
        throw std::runtime_error(failure);
    // The shell's narrow text is taken for UTF-8: what is on users' disks was made that way.
    return PathOf(folder).AppendToPath(LR"(Quenlor\Engineering\FRAXO.Pro VANTIRE Edition\)").GetNameUtf8();
}

/// A folder of models: below "SampleDir" of the installation record, or below the root when running from output.
Utf8String ModelsFolder(const wchar_t* name)
{
    const std::optional<Utf8String> output = OutputRoot();
    QnFileName folder = PathOf(output ? *output + R"(Samples\)" : InstallationRecord("SampleDir"));
    return folder.AppendToPath(name).GetNameUtf8();
}
} // namespace

// Only the user's folder is created when it is missing: the machine's is the installer's business.
Utf8String DirectoryConfig::GetProgramDataDirectory()
{
    if (const std::optional<Utf8String> output = OutputRoot())
        return *output + R"(AppData\)";
    return ProductFolderBelow(CSIDL_COMMON_APPDATA, "Could not get ProgramData folder");
}

Utf8String DirectoryConfig::GetLocalAppDataDirectory()
{
    if (const std::optional<Utf8String> output = OutputRoot())
        return *output + R"(LocalAppData\)";
    return ProductFolderBelow(CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, "Could not get LocalAppData folder");
}

Utf8String DirectoryConfig::GetProfileFolderDirectory()
{
    return GetProgramDataDirectory();
}

Utf8String DirectoryConfig::GetFraxoSectionDatabaseDirectory()
{
    const Utf8String chosen = GetEnvironmentVariableValue("FRAXO_PRO_SECTIONS_DIRECTORY");
    if (!chosen.empty())
        return QnFileName{FixedPathOf(PathOf(chosen))}.GetNameUtf8();
    constexpr FolderTail sections = R"(Sections\)";
    const Attempt beside;
    QnFileName besideExecutable = GetCurrentExeDirectory();
    besideExecutable.AppendToPath(PathOf(sections.text).GetName());
    if (Exists(besideExecutable))
        return besideExecutable.GetNameUtf8();
    beside.PassOver();
    return InMachineData(sections);
}

Utf8String DirectoryConfig::GetProjectConfigurationDirectory()
{
    const Attempt choice;
    const Utf8String project = UserSettingsConfig::GetDefaultConnectedProjectId();
    const bool isInUse = !project.empty() && UserSettingsConfig::UseDefaultConnectedProject();
    if (!isInUse)
        choice.PassOver(project.empty() ? 0 : 1); // that it is not to be used decides
    QnFileName directory = PathOf(GetLocalAppDataDirectory());
    directory.AppendToPath(PathOf(isInUse ? project : "Default").GetName()).AppendSeparator();
    return directory.GetNameUtf8();
}

// clang-format off
Utf8String DirectoryConfig::GetSampleModelsDirectory()       { return ModelsFolder(LR"(Sample Models\)"); }
Utf8String DirectoryConfig::GetVerificationModelsDirectory() { return ModelsFolder(LR"(Verification Models\)"); }
Utf8String DirectoryConfig::GetSeedModelsDirectory()         { return ModelsFolder(LR"(Seed Models\)"); }

Utf8String DirectoryConfig::GetPluginsDirectory()            { return BelowRoot(R"(FRAXO\Plugins\)"); }
Utf8String DirectoryConfig::GetLumConnectionHtmlDirectory()  { return BelowRoot(R"(FRAXO\LumConnection\Html\)"); }
Utf8String DirectoryConfig::GetRoseDatabaseDirectory()       { return BelowRoot(R"(Resource\CIS2Support\)"); }
Utf8String DirectoryConfig::GetRCDesignerDirectory()         { return BelowRoot(R"(FRAXO\RCDesigner\)"); }
Utf8String DirectoryConfig::GetHelpDirectory()               { return BelowRoot(R"(Help\)"); }
Utf8String DirectoryConfig::GetSectionWizardDirectory()      { return BelowRoot(R"(FRAXO\SectionWizard\)"); }
Utf8String DirectoryConfig::GetFRAXOProEngineDirectory()     { return BelowRoot(R"(FRAXO\FProFraxo\)"); }
Utf8String DirectoryConfig::GetFRAXOProEngineExePath()       { return GetFRAXOProEngineDirectory() + "FProFraxo.exe"; }
Utf8String DirectoryConfig::GetFRAXOProEngineStlExePath()    { return GetFRAXOProEngineDirectory() + "FProFraxoStl.exe"; }

Utf8String DirectoryConfig::GetLumConnectionConnectionTemplatesDirectory() { return InConfiguration(R"(LumConnection\ConnectionTemplates\)"); }
Utf8String DirectoryConfig::GetLumConnectionDatabaseDirectory()            { return InConfiguration(R"(LumConnection\Database\)"); }
Utf8String DirectoryConfig::GetLumConnectionImagesDirectory()              { return InConfiguration(R"(LumConnection\Images\)"); }

// "Plugins" below the root but "PlugIns" in the user's data: both spellings are on users' disks.
Utf8String DirectoryConfig::GetConfigurationDirectory()            { return InUserData(R"(Default\)"); }
Utf8String DirectoryConfig::GetEditorAppDataDirectory()            { return InUserData(R"(Default\Editor\)"); }
Utf8String DirectoryConfig::GetStrucLinkAppDataDirectory()         { return InUserData(R"(Default\PlugIns\StrucLink\)"); }
Utf8String DirectoryConfig::GetPipeLinkAppDataDirectory()          { return InUserData(R"(Default\PlugIns\PipeLink\)"); }
Utf8String DirectoryConfig::GetConnectionTagLinkAppDataDirectory() { return InUserData(R"(Default\PlugIns\ConnectionTagLink\)"); }
Utf8String DirectoryConfig::GetStWizardAppDataDirectory()          { return InUserData(R"(Default\StWizard\)"); }
Utf8String DirectoryConfig::GetCrashReportsDirectory()             { return InUserData(R"(CrashReports\)"); }

Utf8String DirectoryConfig::GetGBSteelDesignDirectory()            { return InMachineData(R"(GBSteelDesign\)"); }
// clang-format on
} // namespace Quenlor::Fraxo::SharedUtilities::Native
