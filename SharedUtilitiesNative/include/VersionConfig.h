#pragma once

#include <Quenlor/Utf8String.h>

#include "SharedUtilitiesExport.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// What the product is called, which release this is, and how versions compare.
///
/// Names, keys and the release number are compiled in; the version comes from the running executable's version
/// resource, which is read once per process. Nothing here throws. Any thread may call.
/// ```cpp
/// const Utf8String key = R"(Software\Example\)" + VersionConfig::GetVersionStamp();
/// if (VersionConfig::CompareVersions(VersionConfig::GetProductVersion(), fileVersion) < 0)
///     Warn("The file is from a newer version");
/// ```
class SHAREDUTILITIES_EXPORT VersionConfig final
{
public:
    VersionConfig() = delete;

    static Utf8String GetProductFamily();           ///< "FRAXO.PRO VANTIRE"
    static Utf8String GetProductName();             ///< The same text as the family.
    static Utf8String GetProductNameForQuenlorCI(); ///< "FRAXO.PRO"
    static Utf8String GetReleaseNumber();           ///< Such as "NN.00.00": names this release's keys and INI file.
    static Utf8String GetProductKey();              ///< "FraxoPro"
    static Utf8String GetPledgeSeries();            ///< "7"
    static Utf8String GetFRAXOUpgradeCode();        ///< The installer's upgrade code, in braces.

    /// "21.00.00.00": the release that connected projects are registered under, not the one this is.
    static Utf8String GetConnectedProjectRegistrationKey();

    /// The executable's build, the third part of its file version, with at least two digits; "00" when it has none.
    static Utf8String GetBuildNumber();

    /// The executable's file version, four parts of at least two digits; "00.00.00.00" when it has none.
    static Utf8String GetProductVersion();

    /// `FraxoPro\<release>`, the product key and the release number: the part of a registry key that separates the
    /// settings of one release from those of another.
    static Utf8String GetVersionStamp();

    /// Compares two dotted versions part by part as numbers. Missing parts, and everything from the first character
    /// on that fits no number, are 0. Only the low 16 bits of each part are compared: 65536 is 0, -1 is 65535.
    /// @return 1 when `first` is the later version, -1 when it is the earlier one, 0 when they are equal
    static int CompareVersions(Utf8String first, Utf8String second);
};
} // namespace Quenlor::Fraxo::SharedUtilities::Native
