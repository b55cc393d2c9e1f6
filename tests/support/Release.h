#pragma once

#include <string>

#include "VersionConfig.h"

// What carries the number of the release, made from the product's own: a new release changes no test.

inline const std::string Release =
    Quenlor::Fraxo::SharedUtilities::Native::VersionConfig::GetReleaseNumber().ToStdString();
inline const std::string ProductIni = "FraxoPro" + Release + ".ini";

inline const std::string InstallationKey = R"(FraxoPro\)" + Release;            ///< Of the installation record.
inline const std::string VendorKey = R"(SOFTWARE\Quenlor\FraxoPro\)" + Release; ///< What installers and support set.
inline const std::string SettingsKey = R"(Software\Quenlor Systems\FraxoPro\)" + Release; ///< The user's own settings.
