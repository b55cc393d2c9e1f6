#include "LanguageHelper.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>
#include <utility>

#include <Platform/Win32.h>

#include "core/Trace.h"

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
struct Language
{
    const char* code;
    const char* culture;
    const char* id;
    const char* postfix;
};

// Irregular on purpose: Italian and Korean share the English id and libraries, Marathi has libraries but no id.
constexpr Language Languages[] = {
    {.code = "en", .culture = "en-US", .id = "01", .postfix = "EN"},
    {.code = "fr", .culture = "fr-FR", .id = "02", .postfix = "FR"},
    {.code = "de", .culture = "de-DE", .id = "03", .postfix = "DE"},
    {.code = "ru", .culture = "ru-RU", .id = "04", .postfix = "RU"},
    {.code = "es", .culture = "es-ES", .id = "05", .postfix = "ES"},
    {.code = "tr", .culture = "tr-TR", .id = "06", .postfix = "TR"},
    {.code = "pl", .culture = "pl-PL", .id = "07", .postfix = "PL"},
    {.code = "ja", .culture = "ja-JP", .id = "08", .postfix = "JP"},
    {.code = "zh-cn", .culture = "zh-CN", .id = "09", .postfix = "CH"},
    {.code = "it", .culture = "it-IT", .id = "01", .postfix = "EN"},
    {.code = "ko", .culture = "ko-KR", .id = "01", .postfix = "EN"},
    {.code = "mr", .culture = "mr-IN", .id = "01", .postfix = "MA"},
};

/// The row of a code; English's for one that is unknown.
const Language& Find(const Utf8String& code)
{
    const auto* const found = std::ranges::find_if(Languages, [&](const Language& row) { return code == row.code; });
    return found == std::end(Languages) ? Languages[0] : *found;
}

// The GDI character set of a primary language; the default one for others.
constexpr std::pair<unsigned, unsigned char> Charsets[] = {
    {0x04, 134}, // Chinese: GB2312
    {0x11, 128}, // Japanese: Shift-JIS
    {0x15, 238}, // Polish: East European
    {0x1A, 238}, // Croatian, Serbian, Bosnian: East European
    {0x19, 204}, // Russian: Cyrillic
    {0x1F, 162}, // Turkish
};
} // namespace

Utf8String LanguageHelper::GetCultureString()
{
    return Find(GetCurrentLanguage()).culture;
}

Utf8String LanguageHelper::GetLangIdString()
{
    return Find(GetCurrentLanguage()).id;
}

int LanguageHelper::GetLangId()
{
    return std::atoi(GetLangIdString().c_str());
}

Utf8String LanguageHelper::GetDllLanguagePostfix(const Utf8String& code)
{
    return Find(code).postfix;
}

Utf8String LanguageHelper::GetDllLanguagePostfix()
{
    return GetDllLanguagePostfix(GetCurrentLanguage());
}

Utf8String LanguageHelper::GetTablesFontName()
{
    return GetCurrentLanguage() == "ja" ? "Meiryo UI" : "Arial";
}

unsigned char LanguageHelper::GetInterfaceCharset()
{
    const unsigned language = ::GetUserDefaultUILanguage();
    if (trace)
        trace->push_back({Source::Kind::System, "this user's display language", std::to_string(language), true});
    for (const auto& [primaryLanguage, charset] : Charsets)
    {
        if (primaryLanguage == (language & 0x3FFU))
            return charset;
    }
    return 0;
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
