#pragma once

// What tools need beyond the public headers: where answers come from, the feature switches, the choice of a language
// and of a log configuration, and where the user's copies of installed files are. A tool includes nothing else of src.

#include "configfiles/UserFile.h"
#include "core/Paths.h"
#include "core/Trace.h"
#include "devfeatures/FeatureFlags.h"
#include "ini/IniText.h"
#include "language/LanguageChoice.h"
#include "logging/LogConfigurationChoice.h"
#include "logging/LoggerPlan.h" // of the base library
#include "registry/ProductKeys.h"
#include "registry/RegistryKey.h"
