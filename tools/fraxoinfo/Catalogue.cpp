#include "Catalogue.h"

#include <algorithm>
#include <set>

#include "DirectoryConfig.h"
#include "IniConfig.h"
#include "LanguageHelper.h"
#include "PerMonitorDPIHelper.h"
#include "RegistryHelper.h"
#include "UserSettingsConfig.h"
#include "VersionConfig.h"
#include "XmlConfig.h"

using namespace Quenlor::Fraxo::SharedUtilities::Native;

namespace FraxoInfo
{
namespace
{
Value ToValue(const Quenlor::Utf8String& text)
{
    return std::string{text.data(), text.length()};
}

Value ToValue(const Quenlor::QnFileName& path)
{
    return ToValue(path.GetNameUtf8());
}

Value ToValue(bool flag)
{
    return flag;
}

Value ToValue(int number)
{
    return std::int64_t{number};
}

Value ToValue(const PlexoraExplorerVersion& version)
{
    return std::to_string(version.Major) + '.' + std::to_string(version.Minor) + '.' + std::to_string(version.Build);
}

Value ToValue(double number)
{
    return number;
}

Value ToValue(const std::set<Quenlor::Utf8String>& texts)
{
    std::vector<std::string> list;
    list.reserve(texts.size());
    for (const Quenlor::Utf8String& text : texts)
        list.push_back(text.ToStdString());
    return list;
}

template<auto Getter>
Value Ask()
{
    return ToValue(Getter());
}

// clang-format off
constexpr Operation Operations[] = {
    {"VersionConfig", "GetProductFamily", Kind::Text, Ask<VersionConfig::GetProductFamily>},
    {"VersionConfig", "GetProductName", Kind::Text, Ask<VersionConfig::GetProductName>},
    {"VersionConfig", "GetProductNameForQuenlorCI", Kind::Text, Ask<VersionConfig::GetProductNameForQuenlorCI>},
    {"VersionConfig", "GetReleaseNumber", Kind::Text, Ask<VersionConfig::GetReleaseNumber>},
    {"VersionConfig", "GetProductKey", Kind::Text, Ask<VersionConfig::GetProductKey>},
    {"VersionConfig", "GetPledgeSeries", Kind::Text, Ask<VersionConfig::GetPledgeSeries>},
    {"VersionConfig", "GetFRAXOUpgradeCode", Kind::Text, Ask<VersionConfig::GetFRAXOUpgradeCode>},
    {"VersionConfig", "GetConnectedProjectRegistrationKey", Kind::Text, Ask<VersionConfig::GetConnectedProjectRegistrationKey>},
    {"VersionConfig", "GetBuildNumber", Kind::Text, Ask<VersionConfig::GetBuildNumber>},
    {"VersionConfig", "GetProductVersion", Kind::Text, Ask<VersionConfig::GetProductVersion>},
    {"VersionConfig", "GetVersionStamp", Kind::Text, Ask<VersionConfig::GetVersionStamp>},

    {"RegistryHelper", "GetCurrentUserKey", Kind::Text, Ask<RegistryHelper::GetCurrentUserKey>},

    {"DirectoryConfig", "IsRunningFromOutput", Kind::Flag, Ask<DirectoryConfig::IsRunningFromOutput>},
    {"DirectoryConfig", "GetFRAXOProRoot", Kind::Directory, Ask<DirectoryConfig::GetFRAXOProRoot>},
    {"DirectoryConfig", "GetCurrentExeDirectory", Kind::Directory, Ask<DirectoryConfig::GetCurrentExeDirectory>},
    {"DirectoryConfig", "GetProgramDataDirectory", Kind::Directory, Ask<DirectoryConfig::GetProgramDataDirectory>},
    {"DirectoryConfig", "GetLocalAppDataDirectory", Kind::Directory, Ask<DirectoryConfig::GetLocalAppDataDirectory>},
    {"DirectoryConfig", "GetProfileFolderDirectory", Kind::Directory, Ask<DirectoryConfig::GetProfileFolderDirectory>},
    {"DirectoryConfig", "GetConfigurationDirectory", Kind::Directory, Ask<DirectoryConfig::GetConfigurationDirectory>},
    {"DirectoryConfig", "GetFraxoSectionDatabaseDirectory", Kind::Directory, Ask<DirectoryConfig::GetFraxoSectionDatabaseDirectory>},
    {"DirectoryConfig", "GetProjectConfigurationDirectory", Kind::Directory, Ask<DirectoryConfig::GetProjectConfigurationDirectory>},
    {"DirectoryConfig", "GetSampleModelsDirectory", Kind::Directory, Ask<DirectoryConfig::GetSampleModelsDirectory>},
    {"DirectoryConfig", "GetVerificationModelsDirectory", Kind::Directory, Ask<DirectoryConfig::GetVerificationModelsDirectory>},
    {"DirectoryConfig", "GetSeedModelsDirectory", Kind::Directory, Ask<DirectoryConfig::GetSeedModelsDirectory>},
    {"DirectoryConfig", "GetPluginsDirectory", Kind::Directory, Ask<DirectoryConfig::GetPluginsDirectory>},
    {"DirectoryConfig", "GetLumConnectionHtmlDirectory", Kind::Directory, Ask<DirectoryConfig::GetLumConnectionHtmlDirectory>},
    {"DirectoryConfig", "GetRoseDatabaseDirectory", Kind::Directory, Ask<DirectoryConfig::GetRoseDatabaseDirectory>},
    {"DirectoryConfig", "GetRCDesignerDirectory", Kind::Directory, Ask<DirectoryConfig::GetRCDesignerDirectory>},
    {"DirectoryConfig", "GetHelpDirectory", Kind::Directory, Ask<DirectoryConfig::GetHelpDirectory>},
    {"DirectoryConfig", "GetSectionWizardDirectory", Kind::Directory, Ask<DirectoryConfig::GetSectionWizardDirectory>},
    {"DirectoryConfig", "GetFRAXOProEngineDirectory", Kind::Directory, Ask<DirectoryConfig::GetFRAXOProEngineDirectory>},
    {"DirectoryConfig", "GetFRAXOProEngineExePath", Kind::File, Ask<DirectoryConfig::GetFRAXOProEngineExePath>},
    {"DirectoryConfig", "GetFRAXOProEngineStlExePath", Kind::File, Ask<DirectoryConfig::GetFRAXOProEngineStlExePath>},
    {"DirectoryConfig", "GetLumConnectionConnectionTemplatesDirectory", Kind::Directory, Ask<DirectoryConfig::GetLumConnectionConnectionTemplatesDirectory>},
    {"DirectoryConfig", "GetLumConnectionDatabaseDirectory", Kind::Directory, Ask<DirectoryConfig::GetLumConnectionDatabaseDirectory>},
    {"DirectoryConfig", "GetLumConnectionImagesDirectory", Kind::Directory, Ask<DirectoryConfig::GetLumConnectionImagesDirectory>},
    {"DirectoryConfig", "GetEditorAppDataDirectory", Kind::Directory, Ask<DirectoryConfig::GetEditorAppDataDirectory>},
    {"DirectoryConfig", "GetStrucLinkAppDataDirectory", Kind::Directory, Ask<DirectoryConfig::GetStrucLinkAppDataDirectory>},
    {"DirectoryConfig", "GetPipeLinkAppDataDirectory", Kind::Directory, Ask<DirectoryConfig::GetPipeLinkAppDataDirectory>},
    {"DirectoryConfig", "GetConnectionTagLinkAppDataDirectory", Kind::Directory, Ask<DirectoryConfig::GetConnectionTagLinkAppDataDirectory>},
    {"DirectoryConfig", "GetStWizardAppDataDirectory", Kind::Directory, Ask<DirectoryConfig::GetStWizardAppDataDirectory>},
    {"DirectoryConfig", "GetCrashReportsDirectory", Kind::Directory, Ask<DirectoryConfig::GetCrashReportsDirectory>},
    {"DirectoryConfig", "GetGBSteelDesignDirectory", Kind::Directory, Ask<DirectoryConfig::GetGBSteelDesignDirectory>},

    {"IniConfig", "GetPluginsIniPath", Kind::File, Ask<IniConfig::GetPluginsIniPath>, PluginsIni},
    {"IniConfig", "GetFraxoProIniPath", Kind::File, Ask<IniConfig::GetFraxoProIniPath>, FraxoProIni},
    {"IniConfig", "GetCodesIniPath", Kind::File, Ask<IniConfig::GetCodesIniPath>, CodesIni},
    {"IniConfig", "GetNativeCodesIniPath", Kind::File, Ask<IniConfig::GetNativeCodesIniPath>},
    {"IniConfig", "GetDesignCodesIniDirectory", Kind::Directory, Ask<IniConfig::GetDesignCodesIniDirectory>},
    {"IniConfig", "GetDbSectionCustomIniPath", Kind::File, Ask<IniConfig::GetDbSectionCustomIniPath>, DbSectionCustomIni},
    {"IniConfig", "GetDbSectionCustomDbiPath", Kind::File, Ask<IniConfig::GetDbSectionCustomDbiPath>},
    {"IniConfig", "GetBDeckLiveLoadVehiclePath", Kind::File, Ask<IniConfig::GetBDeckLiveLoadVehiclePath>, BDeckLiveLoadVehicle},
    {"IniConfig", "GetSteelAutoDrafterBaseStyleIniPath", Kind::File, Ask<IniConfig::GetSteelAutoDrafterBaseStyleIniPath>},
    {"IniConfig", "GetSteelAutoDrafterUserStyleIniPath", Kind::File, Ask<IniConfig::GetSteelAutoDrafterUserStyleIniPath>, SteelAutoDrafterStyleIni},
    {"IniConfig", "GetFraxoCommandTblPath", Kind::File, Ask<IniConfig::GetFraxoCommandTblPath>},
    {"IniConfig", "GetFraxoMessageTblPath", Kind::File, Ask<IniConfig::GetFraxoMessageTblPath>},
    {"IniConfig", "GetStWizardDefaultStpPath", Kind::File, Ask<IniConfig::GetStWizardDefaultStpPath>, StWizardDefaultStp},
    {"IniConfig", "GetGBSteelIniPath", Kind::File, Ask<IniConfig::GetGBSteelIniPath>},
    {"IniConfig", "GetIS875CitiesIniPath", Kind::File, Ask<IniConfig::GetIS875CitiesIniPath>, IS875CitiesIni},

    {"XmlConfig", "GetUserQATFilePath", Kind::File, Ask<XmlConfig::GetUserQATFilePath>, QuickAccessToolbarXml},
    {"XmlConfig", "GetApplicationQATFilePath", Kind::File, Ask<XmlConfig::GetApplicationQATFilePath>},
    {"XmlConfig", "GetMRUListFilePath", Kind::File, Ask<XmlConfig::GetMRUListFilePath>},
    {"XmlConfig", "GetEditorSettingsFilePath", Kind::File, Ask<XmlConfig::GetEditorSettingsFilePath>},
    {"XmlConfig", "GetViewerSettingsFilePath", Kind::File, Ask<XmlConfig::GetViewerSettingsFilePath>},
    {"XmlConfig", "GetFileTypeSettingsFilePath", Kind::File, Ask<XmlConfig::GetFileTypeSettingsFilePath>},
    {"XmlConfig", "GetEditorMRUListFilePath", Kind::File, Ask<XmlConfig::GetEditorMRUListFilePath>},
    {"XmlConfig", "GetScriptEditorMRUListFilePath", Kind::File, Ask<XmlConfig::GetScriptEditorMRUListFilePath>},
    {"XmlConfig", "GetSteelAutoDrafterSectionListFilePath", Kind::File, Ask<XmlConfig::GetSteelAutoDrafterSectionListFilePath>},
    {"XmlConfig", "GetUserConnectionTagLinkFilePath", Kind::File, Ask<XmlConfig::GetUserConnectionTagLinkFilePath>, ConnectionTagLinkXml},
    {"XmlConfig", "GetApplicationConnectionTagLinkFilePath", Kind::File, Ask<XmlConfig::GetApplicationConnectionTagLinkFilePath>},

    {"LanguageHelper", "GetCurrentLanguage", Kind::Text, Ask<LanguageHelper::GetCurrentLanguage>},
    {"LanguageHelper", "GetInstalledLanguages", Kind::List, Ask<LanguageHelper::GetInstalledLanguages>},
    {"LanguageHelper", "GetLanguageDirectory", Kind::Directory, Ask<LanguageHelper::GetLanguageDirectory>},
    {"LanguageHelper", "GetCurrentLanguageDirectory", Kind::Directory, [] { return ToValue(LanguageHelper::GetCurrentLanguageDirectory()); }},
    {"LanguageHelper", "GetCultureString", Kind::Text, Ask<LanguageHelper::GetCultureString>},
    {"LanguageHelper", "GetLangIdString", Kind::Text, Ask<LanguageHelper::GetLangIdString>},
    {"LanguageHelper", "GetLangId", Kind::Number, Ask<LanguageHelper::GetLangId>},
    {"LanguageHelper", "GetDllLanguagePostfix", Kind::Text, [] { return ToValue(LanguageHelper::GetDllLanguagePostfix()); }},
    {"LanguageHelper", "GetTablesFontName", Kind::Text, Ask<LanguageHelper::GetTablesFontName>},
    {"LanguageHelper", "GetInterfaceCharset", Kind::Number, Ask<LanguageHelper::GetInterfaceCharset>},
    {"LanguageHelper", "GetFraxoProRcAciPath", Kind::File, Ask<LanguageHelper::GetFraxoProRcAciPath>},
    {"LanguageHelper", "GetFraxoProRcAci_05Path", Kind::File, Ask<LanguageHelper::GetFraxoProRcAci_05Path>},
    {"LanguageHelper", "GetFraxoProRcBaelPath", Kind::File, Ask<LanguageHelper::GetFraxoProRcBaelPath>},
    {"LanguageHelper", "GetFraxoProRcCan23_10Path", Kind::File, Ask<LanguageHelper::GetFraxoProRcCan23_10Path>},
    {"LanguageHelper", "GetFraxoProRcDin1045Path", Kind::File, Ask<LanguageHelper::GetFraxoProRcDin1045Path>},
    {"LanguageHelper", "GetFraxoProRcEc204Path", Kind::File, Ask<LanguageHelper::GetFraxoProRcEc204Path>},
    {"LanguageHelper", "GetFraxoProRcEc2Path", Kind::File, Ask<LanguageHelper::GetFraxoProRcEc2Path>},
    {"LanguageHelper", "GetFraxoProRcEhePath", Kind::File, Ask<LanguageHelper::GetFraxoProRcEhePath>},
    {"LanguageHelper", "GetFraxoProRcNs3473Path", Kind::File, Ask<LanguageHelper::GetFraxoProRcNs3473Path>},
    {"LanguageHelper", "GetFraxoProRcSp52Path", Kind::File, Ask<LanguageHelper::GetFraxoProRcSp52Path>},
    {"LanguageHelper", "GetFraxoProRcTs500Path", Kind::File, Ask<LanguageHelper::GetFraxoProRcTs500Path>},
    {"LanguageHelper", "GetFraxoProRcPath", Kind::File, Ask<LanguageHelper::GetFraxoProRcPath>},
    {"LanguageHelper", "GetFraxoProResourcePath", Kind::File, [] { return ToValue(LanguageHelper::GetFraxoProResourcePath()); }},
    {"LanguageHelper", "GetStWizardResourcePath", Kind::File, Ask<LanguageHelper::GetStWizardResourcePath>},
    {"LanguageHelper", "GetAdvancedQryDBResourcePath", Kind::File, Ask<LanguageHelper::GetAdvancedQryDBResourcePath>},
    {"LanguageHelper", "GetAdvancedQryResourcePath", Kind::File, Ask<LanguageHelper::GetAdvancedQryResourcePath>},
    {"LanguageHelper", "GetSectionDBMgrResourcePath", Kind::File, Ask<LanguageHelper::GetSectionDBMgrResourcePath>},
    {"LanguageHelper", "GetStWizardInternalResourcePath", Kind::File, Ask<LanguageHelper::GetStWizardInternalResourcePath>},
    {"LanguageHelper", "GetOfficeLocationsPath", Kind::File, Ask<LanguageHelper::GetOfficeLocationsPath>},
    {"LanguageHelper", "GetCurrentLanguageSectionWizardDllPath(\"Section\")", Kind::File, [] { return ToValue(LanguageHelper::GetCurrentLanguageSectionWizardDllPath("Section")); }},
    {"LanguageHelper", "GetCodeDescriptionDir", Kind::Text, Ask<LanguageHelper::GetCodeDescriptionDir>},

    {"UserSettingsConfig", "UseDefaultConnectedProject", Kind::Flag, Ask<UserSettingsConfig::UseDefaultConnectedProject>},
    {"UserSettingsConfig", "GetDefaultConnectedProjectId", Kind::Text, Ask<UserSettingsConfig::GetDefaultConnectedProjectId>},
    {"UserSettingsConfig", "GetDefaultConnectedProjectName", Kind::Text, Ask<UserSettingsConfig::GetDefaultConnectedProjectName>},
    {"UserSettingsConfig", "UseRoamingProjectConfig", Kind::Flag, Ask<UserSettingsConfig::UseRoamingProjectConfig>},
    {"UserSettingsConfig", "UseDefaultProjectForLogging", Kind::Flag, Ask<UserSettingsConfig::UseDefaultProjectForLogging>},
    {"UserSettingsConfig", "GetApplicationTheme", Kind::Text, Ask<UserSettingsConfig::GetApplicationTheme>},
    {"UserSettingsConfig", "GetApplicationFont", Kind::Text, Ask<UserSettingsConfig::GetApplicationFont>},
    {"UserSettingsConfig", "IsRssFeedEnabled", Kind::Flag, Ask<UserSettingsConfig::IsRssFeedEnabled>},
    {"UserSettingsConfig", "GetShowPreviewerOnStartup", Kind::Flag, Ask<UserSettingsConfig::GetShowPreviewerOnStartup>},
    {"UserSettingsConfig", "GetRssFeedLastReadInfo", Kind::Text, Ask<UserSettingsConfig::GetRssFeedLastReadInfo>},
    {"UserSettingsConfig", "IsNuclearDesignCodeEnabled", Kind::Flag, Ask<UserSettingsConfig::IsNuclearDesignCodeEnabled>},
    {"UserSettingsConfig", "IsLumConnectionEnabled", Kind::Flag, Ask<UserSettingsConfig::IsLumConnectionEnabled>},
    {"UserSettingsConfig", "GetRssFeedCategory(0)", Kind::Flag, [] { return ToValue(UserSettingsConfig::GetRssFeedCategory(0)); }},
    {"UserSettingsConfig", "GetRssFeedZone(0)", Kind::Flag, [] { return ToValue(UserSettingsConfig::GetRssFeedZone(0)); }},
    {"UserSettingsConfig", "GetIsNewVersionInstallFlag", Kind::Flag, Ask<UserSettingsConfig::GetIsNewVersionInstallFlag>},
    {"UserSettingsConfig", "GetUserNameString", Kind::Text, Ask<UserSettingsConfig::GetUserNameString>},
    {"UserSettingsConfig", "GetUserEmail", Kind::Text, Ask<UserSettingsConfig::GetUserEmail>},
    {"UserSettingsConfig", "GetTestCrashReporting", Kind::Flag, Ask<UserSettingsConfig::GetTestCrashReporting>},
    {"UserSettingsConfig", "IsPL365Enabled", Kind::Flag, Ask<UserSettingsConfig::IsPL365Enabled>},
    {"UserSettingsConfig", "GetLastInstalledProductVersion", Kind::Text, Ask<UserSettingsConfig::GetLastInstalledProductVersion>},
    {"UserSettingsConfig", "GetStrucLinkExePath", Kind::File, Ask<UserSettingsConfig::GetStrucLinkExePath>},
    {"UserSettingsConfig", "GetConnectionTagLinkExePath", Kind::File, Ask<UserSettingsConfig::GetConnectionTagLinkExePath>},
    {"UserSettingsConfig", "GetScriptEditorExePath", Kind::File, Ask<UserSettingsConfig::GetScriptEditorExePath>},
    {"UserSettingsConfig", "GetInputEditorExePath", Kind::File, Ask<UserSettingsConfig::GetInputEditorExePath>},
    {"UserSettingsConfig", "GetFProRCExePath", Kind::File, Ask<UserSettingsConfig::GetFProRCExePath>},
    {"UserSettingsConfig", "GetStWizardExePath", Kind::File, Ask<UserSettingsConfig::GetStWizardExePath>},
    {"UserSettingsConfig", "GetSectionWizardExePath", Kind::File, Ask<UserSettingsConfig::GetSectionWizardExePath>},
    {"UserSettingsConfig", "GetFPPMExePath", Kind::File, Ask<UserSettingsConfig::GetFPPMExePath>},
    {"UserSettingsConfig", "GetChineseSteelDesignExePath", Kind::File, Ask<UserSettingsConfig::GetChineseSteelDesignExePath>},
    {"UserSettingsConfig", "GetAutoLoadCombinationRuleManagerExePath", Kind::File, Ask<UserSettingsConfig::GetAutoLoadCombinationRuleManagerExePath>},
    {"UserSettingsConfig", "GetOpenFraxoIdeHelpDocumentPath", Kind::File, Ask<UserSettingsConfig::GetOpenFraxoIdeHelpDocumentPath>},
    {"UserSettingsConfig", "GetFraxoProReadMePath", Kind::File, Ask<UserSettingsConfig::GetFraxoProReadMePath>},
    {"UserSettingsConfig", "GetFraxoProHelpDocumentPath", Kind::File, Ask<UserSettingsConfig::GetFraxoProHelpDocumentPath>},
    {"UserSettingsConfig", "GetReleaseReportDocumentPath", Kind::File, Ask<UserSettingsConfig::GetReleaseReportDocumentPath>},
    {"UserSettingsConfig", "GetOpenFraxoHelpDocumentPath", Kind::File, Ask<UserSettingsConfig::GetOpenFraxoHelpDocumentPath>},
    {"UserSettingsConfig", "SectionWizardHelpDocumentPath", Kind::File, Ask<UserSettingsConfig::SectionWizardHelpDocumentPath>},
    {"UserSettingsConfig", "IsPlexoraExplorerInstalled", Kind::Flag, Ask<UserSettingsConfig::IsPlexoraExplorerInstalled>},
    {"UserSettingsConfig", "IsMultiplePlexoraExplorerInstalled", Kind::Flag, Ask<UserSettingsConfig::IsMultiplePlexoraExplorerInstalled>},
    {"UserSettingsConfig", "GetPlexoraExplorerVersionString", Kind::Text, Ask<UserSettingsConfig::GetPlexoraExplorerVersionString>},
    {"UserSettingsConfig", "GetPlexoraExplorerVersionTokens", Kind::Text, Ask<UserSettingsConfig::GetPlexoraExplorerVersionTokens>},
    {"UserSettingsConfig", "GetPlexoraExplorerExecutablePath", Kind::Directory, Ask<UserSettingsConfig::GetPlexoraExplorerExecutablePath>},
    {"UserSettingsConfig", "GetDesconWinExePath", Kind::File, Ask<UserSettingsConfig::GetDesconWinExePath>},
    {"UserSettingsConfig", "IsDesconWinInstalled", Kind::Flag, Ask<UserSettingsConfig::IsDesconWinInstalled>},
    {"UserSettingsConfig", "GetDesconWinInterface", Kind::Flag, Ask<UserSettingsConfig::GetDesconWinInterface>},
    {"UserSettingsConfig", "GetDesconWinAsdCode", Kind::Flag, Ask<UserSettingsConfig::GetDesconWinAsdCode>},
    {"UserSettingsConfig", "GetDesconWinAsdMetricCode", Kind::Flag, Ask<UserSettingsConfig::GetDesconWinAsdMetricCode>},
    {"UserSettingsConfig", "GetDesconWinLrfdCode", Kind::Flag, Ask<UserSettingsConfig::GetDesconWinLrfdCode>},
    {"UserSettingsConfig", "GetDesconWinLrfdMetricCode", Kind::Flag, Ask<UserSettingsConfig::GetDesconWinLrfdMetricCode>},
    {"UserSettingsConfig", "GetDesconBraceExePath", Kind::File, Ask<UserSettingsConfig::GetDesconBraceExePath>},
    {"UserSettingsConfig", "IsDesconBraceInstalled", Kind::Flag, Ask<UserSettingsConfig::IsDesconBraceInstalled>},
    {"UserSettingsConfig", "GetDesconBraceInterface", Kind::Flag, Ask<UserSettingsConfig::GetDesconBraceInterface>},
    {"UserSettingsConfig", "GetDesconBraceAsdCode", Kind::Flag, Ask<UserSettingsConfig::GetDesconBraceAsdCode>},
    {"UserSettingsConfig", "GetDesconBraceAsdMetricCode", Kind::Flag, Ask<UserSettingsConfig::GetDesconBraceAsdMetricCode>},
    {"UserSettingsConfig", "GetDesconBraceLrfdCode", Kind::Flag, Ask<UserSettingsConfig::GetDesconBraceLrfdCode>},
    {"UserSettingsConfig", "GetDesconBraceLrfdMetricCode", Kind::Flag, Ask<UserSettingsConfig::GetDesconBraceLrfdMetricCode>},
    {"UserSettingsConfig", "GetAdaptBuilderPath", Kind::Directory, Ask<UserSettingsConfig::GetAdaptBuilderPath>},
    {"UserSettingsConfig", "GetAdaptBuilderExePath", Kind::File, Ask<UserSettingsConfig::GetAdaptBuilderExePath>},
    {"UserSettingsConfig", "GetLumConceptExePath", Kind::File, Ask<UserSettingsConfig::GetLumConceptExePath>},
    {"UserSettingsConfig", "GetPlanWinExePath", Kind::File, Ask<UserSettingsConfig::GetPlanWinExePath>},
    {"UserSettingsConfig", "GetPlanWinVersion", Kind::Text, Ask<UserSettingsConfig::GetPlanWinVersion>},
    {"UserSettingsConfig", "GetKRDCExePath", Kind::File, Ask<UserSettingsConfig::GetKRDCExePath>},
    {"UserSettingsConfig", "GetKRDCVersion", Kind::Text, Ask<UserSettingsConfig::GetKRDCVersion>},
    {"UserSettingsConfig", "GetFraxoFoundationProductName(false)", Kind::Text, [] { return ToValue(UserSettingsConfig::GetFraxoFoundationProductName(false)); }},
    {"UserSettingsConfig", "GetFraxoFoundationProductName(true)", Kind::Text, [] { return ToValue(UserSettingsConfig::GetFraxoFoundationProductName(true)); }},
    {"UserSettingsConfig", "GetFraxoFoundationExePath(false)", Kind::File, [] { return ToValue(UserSettingsConfig::GetFraxoFoundationExePath(false)); }},
    {"UserSettingsConfig", "GetFraxoFoundationExePath(true)", Kind::File, [] { return ToValue(UserSettingsConfig::GetFraxoFoundationExePath(true)); }},
    {"UserSettingsConfig", "IsWordInstalled", Kind::Flag, Ask<UserSettingsConfig::IsWordInstalled>},
    {"UserSettingsConfig", "GetWordProgID", Kind::Text, Ask<UserSettingsConfig::GetWordProgID>},
    {"UserSettingsConfig", "GetWordVersionNumber", Kind::Number, Ask<UserSettingsConfig::GetWordVersionNumber>},
    {"UserSettingsConfig", "GetTechnipExePath", Kind::File, Ask<UserSettingsConfig::GetTechnipExePath>},
    {"UserSettingsConfig", "GetMsInfo32ExePath", Kind::File, Ask<UserSettingsConfig::GetMsInfo32ExePath>},
    {"UserSettingsConfig", "IsExeRunning(\"fraxoinfo\")", Kind::Flag, [] { return ToValue(UserSettingsConfig::IsExeRunning("fraxoinfo")); }},

    {"PerMonitorDPIHelper", "GetSystemDPI", Kind::Number, Ask<PerMonitorDPIHelper::GetSystemDPI>},
};
// clang-format on
} // namespace

std::span<const Operation> Catalogue()
{
    return Operations;
}

const Operation* Find(std::string_view name)
{
    const std::size_t qualifier = name.find("::");
    const std::string_view className = qualifier == std::string_view::npos ? "" : name.substr(0, qualifier);
    const std::string_view plainName = className.empty() ? name : name.substr(qualifier + 2);
    const auto found = std::ranges::find_if(Operations,
                                            [&](const Operation& operation) {
        return operation.name == plainName && (className.empty() || operation.className == className);
    });
    return found == std::end(Operations) ? nullptr : &*found;
}
} // namespace FraxoInfo
