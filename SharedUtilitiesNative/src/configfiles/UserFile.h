#pragma once

#include <Quenlor/Utf8String.h>

#include "DirectoryConfig.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// A file of this user that is made from an installed default when it is first asked for.
struct UserFile
{
    /// What the message about a missing default says: a plug-in's file may be missing from a sound installation.
    enum class Origin
    {
        Product,
        PlugIn,
    };

    Utf8String path;
    Utf8String installedDefault;
    Origin origin = Origin::Product;
};

// Where each such file is and what it is made from, without making it. The getters of IniConfig and XmlConfig answer
// with these and provide the file; tools that only look ask here.

UserFile PluginsIni();
UserFile FraxoProIni();
UserFile CodesIni();
UserFile IS875CitiesIni();
UserFile DbSectionCustomIni();
UserFile BDeckLiveLoadVehicle();
UserFile SteelAutoDrafterStyleIni();
UserFile StWizardDefaultStp();
UserFile QuickAccessToolbarXml();
UserFile ConnectionTagLinkXml();

/// A path below the folder that holds the user's files of no particular project.
inline Utf8String InUserDefaults(const Utf8String& tail)
{
    return DirectoryConfig::GetConfigurationDirectory() + tail;
}

/// Copies the installed default if the user's file is missing. An existing file is never overwritten or compared, and
/// its default not looked at. The copy appears whole or not at all.
/// @return the user's path, through the path type, which repairs malformed UTF-8
/// @throws std::runtime_error with a message that starts with the default's file name: when the default is missing,
///         when the user's folder cannot be made, when the copy fails; a folder that was made stays
Utf8String Provide(const UserFile& file);
} // namespace Quenlor::Fraxo::SharedUtilities::Native
