#pragma once

#include <set>

#include <Quenlor/QnFileName.h>
#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The language of the user interface, and where its resources are.
///
/// A language code is short and lower-case: "en", "ja", "zh-cn". Codes compare exactly, letter case included, and an
/// unknown code is treated as English wherever it is mapped.
///
/// The current language and the set of installed ones are found once and stay for the life of the process. Paths are
/// composed without looking at the disk: a ...Directory ends in a separator, a ...Path names a file.
///
/// Nothing here throws for an ordinary failure. Any thread may call.
/// ```cpp
/// const Utf8String offices = LanguageHelper::GetCurrentLanguageDirectory() + "Offices.xml";
/// std::ifstream file{ToNativePath(offices)}; // not c_str(): Windows takes no UTF-8 there, Linux no backslashes
/// ```
class SHAREDUTILITIES_EXPORT LanguageHelper final
{
public:
    LanguageHelper() = delete;

    /// The language of this process, from the first of these that has an answer: the environment variable
    /// FRAXO_PRO_LANGUAGE, taken unchecked; "CurrentLanguage" of the user's registry; "DefaultLanguage" of the
    /// machine's; "en". The two from the registry apply only if they are installed.
    static Utf8String GetCurrentLanguage();

    /// The installed languages: only FRAXO_PRO_LANGUAGE if it is set, else "InstalledLanguages" of the installation
    /// record, else "en".
    static std::set<Utf8String> GetInstalledLanguages();

    /// Stores the user's choice for processes started from now on; this one keeps its language. The code is not
    /// checked, and a failed write is not reported.
    static void SetLanguage(const Utf8String& code);

    static Utf8String GetLanguageDirectory();                              ///< `Resource\Language\` below the root.
    static Utf8String GetCurrentLanguageDirectory();                       ///< Its folder of the current language.
    static Utf8String GetCurrentLanguageDirectory(const Utf8String& code); ///< Its folder of that language.

    static Utf8String GetCultureString(); ///< "en-US", "zh-CN", ...

    /// Two digits, "01" to "09". Italian and Korean share English's "01", and so does Marathi.
    static Utf8String GetLangIdString();
    static int GetLangId(); ///< GetLangIdString as a number.

    /// What distinguishes a language's resource libraries, "EN", "JP", ... Not always the code in capitals: Italian and
    /// Korean have none of their own and use "EN", Marathi's is "MA", Chinese's "CH".
    static Utf8String GetDllLanguagePostfix(const Utf8String& code);
    static Utf8String GetDllLanguagePostfix(); ///< That of the current language.

    static Utf8String GetTablesFontName(); ///< "Meiryo UI" for Japanese, otherwise "Arial".

    /// The GDI character set of the system's user-interface language, which need not be this process's: 134 for
    /// Chinese, 128 Japanese, 238 Polish and Croatian, 204 Russian, 162 Turkish, otherwise 0.
    static unsigned char GetInterfaceCharset();

    /// @name Resource libraries
    /// @{

    /// A library of resources: a name, the language's postfix and ".dll" in one of the product's folders.
    static Utf8String GetFraxoProRcAciPath();
    static Utf8String GetFraxoProRcAci_05Path();
    static Utf8String GetFraxoProRcBaelPath();
    static Utf8String GetFraxoProRcCan23_10Path();
    static Utf8String GetFraxoProRcDin1045Path();
    static Utf8String GetFraxoProRcEc204Path();
    static Utf8String GetFraxoProRcEc2Path();
    static Utf8String GetFraxoProRcEhePath();
    static Utf8String GetFraxoProRcNs3473Path();
    static Utf8String GetFraxoProRcSp52Path();
    static Utf8String GetFraxoProRcTs500Path();
    static Utf8String GetFraxoProRcPath();
    static Utf8String GetFraxoProResourcePath();
    static Utf8String GetFraxoProResourcePath(const Utf8String& code); ///< That of another language.
    static Utf8String GetStWizardResourcePath();
    static Utf8String GetAdvancedQryDBResourcePath();
    static Utf8String GetAdvancedQryResourcePath();
    static Utf8String GetSectionDBMgrResourcePath();
    static Utf8String GetCurrentLanguageSectionWizardDllPath(const Utf8String& name); ///< Of the library called `name`.
    static Utf8String GetStWizardInternalResourcePath();
    /// @}

    static Utf8String GetOfficeLocationsPath(); ///< `Offices.xml` in the current language's folder.

    /// `Language\` and the current code, without a separator at its end: relative, for callers that have the base.
    static Utf8String GetCodeDescriptionDir();
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
