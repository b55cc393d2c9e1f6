#include "LanguageHelper.h"

#include "DirectoryConfig.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
/// A library of the current language. `path` lacks the postfix and the extension.
Utf8String Library(const Utf8String& path)
{
    return path + LanguageHelper::GetDllLanguagePostfix() + ".dll";
}

Utf8String InConcreteDesign(const char* name)
{
    return Library(DirectoryConfig::GetRCDesignerDirectory() + name);
}

Utf8String InLanguageDirectory(const char* name)
{
    return Library(LanguageHelper::GetLanguageDirectory() + name);
}
} // namespace

// The names "USEnglish" and "USEngRC" carry the postfix of any language: French is "USEnglishFR.dll".
// clang-format off
Utf8String LanguageHelper::GetFraxoProRcAciPath()         { return InConcreteDesign("ACI"); }
Utf8String LanguageHelper::GetFraxoProRcAci_05Path()      { return InConcreteDesign("ACI_05"); }
Utf8String LanguageHelper::GetFraxoProRcBaelPath()        { return InConcreteDesign("BAEL"); }
Utf8String LanguageHelper::GetFraxoProRcCan23_10Path()    { return InConcreteDesign("CAN23_10"); }
Utf8String LanguageHelper::GetFraxoProRcDin1045Path()     { return InConcreteDesign("DIN1045"); }
Utf8String LanguageHelper::GetFraxoProRcEc204Path()       { return InConcreteDesign("EC204"); }
Utf8String LanguageHelper::GetFraxoProRcEc2Path()         { return InConcreteDesign("EC2"); }
Utf8String LanguageHelper::GetFraxoProRcEhePath()         { return InConcreteDesign("EHE"); }
Utf8String LanguageHelper::GetFraxoProRcNs3473Path()      { return InConcreteDesign("NS3473"); }
Utf8String LanguageHelper::GetFraxoProRcSp52Path()        { return InConcreteDesign("SP52"); }
Utf8String LanguageHelper::GetFraxoProRcTs500Path()       { return InConcreteDesign("TS500"); }
Utf8String LanguageHelper::GetFraxoProRcPath()            { return InLanguageDirectory("FPro_RC"); }
Utf8String LanguageHelper::GetFraxoProResourcePath()      { return InLanguageDirectory("USEnglish"); }
Utf8String LanguageHelper::GetStWizardResourcePath()      { return InLanguageDirectory("USEngRC"); }
Utf8String LanguageHelper::GetAdvancedQryDBResourcePath() { return InLanguageDirectory("DBResourceDll"); }
Utf8String LanguageHelper::GetAdvancedQryResourcePath()   { return InLanguageDirectory("QueryGenRes"); }
Utf8String LanguageHelper::GetSectionDBMgrResourcePath()  { return InLanguageDirectory("SectionDBMgrRC"); }
Utf8String LanguageHelper::GetStWizardInternalResourcePath() { return Library(DirectoryConfig::GetFRAXOProRoot() + R"(FRAXO\StWizard)"); }
Utf8String LanguageHelper::GetOfficeLocationsPath()       { return GetCurrentLanguageDirectory() + "Offices.xml"; }
Utf8String LanguageHelper::GetCodeDescriptionDir()        { return R"(Language\)" + GetCurrentLanguage(); }
// clang-format on

Utf8String LanguageHelper::GetFraxoProResourcePath(const Utf8String& code)
{
    return GetLanguageDirectory() + "USEnglish" + GetDllLanguagePostfix(code) + ".dll";
}

Utf8String LanguageHelper::GetCurrentLanguageSectionWizardDllPath(const Utf8String& name)
{
    return Library(DirectoryConfig::GetSectionWizardDirectory() + name);
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
