#pragma once

#include <Platform/Win32.h>
#include <Quenlor/Utf8String.h>

#include "CoreUtilities.h"
#include "registry/ProductKeys.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
/// The language that the environment forces on this process, unchecked; empty when it does not.
inline Utf8String ForcedLanguage()
{
    return GetEnvironmentVariableValue("FRAXO_PRO_LANGUAGE");
}

/// A place where a language can be chosen.
struct LanguageChoice
{
    HKEY root;
    const char* name;
    const char* whose; ///< For messages.
};

/// In the order in which they are asked.
inline const LanguageChoice LanguageChoices[] = {
    {HKEY_CURRENT_USER, "CurrentLanguage", "user's"},
    {HKEY_LOCAL_MACHINE, "DefaultLanguage", "machine's default"},
};

inline constexpr char LanguageSubKey[] = R"(\Language)";

/// The key of all choices. The installed set has another one, directly below HKEY_CLASSES_ROOT.
inline Utf8String LanguageChoiceKey()
{
    return ProductKey() + LanguageSubKey;
}

/// Makes the next question find the languages again, which no application does. For tools that watch.
void ForgetLanguages();
} // namespace Quenlor::Fraxo::SharedUtilities::Native
