#include <Platform/Win32.h>

#include <string>
#include <string_view>

#include "posix/Environment.h"

namespace
{
struct Language
{
    std::string_view code; // of ISO 639
    LANGID id;             // primary language and the default region
};

constexpr LANGID English = 0x0409;

constexpr Language Languages[] = {
    {"bs", 0x141A}, {"cs", 0x0405}, {"de", 0x0407}, {"en", English}, {"es", 0x0C0A}, {"fr", 0x040C},
    {"hr", 0x041A}, {"it", 0x0410}, {"ja", 0x0411}, {"ko", 0x0412},  {"mr", 0x044E}, {"nl", 0x0413},
    {"pl", 0x0415}, {"pt", 0x0416}, {"ru", 0x0419}, {"sr", 0x081A},  {"tr", 0x041F}, {"zh", 0x0804},
};
} // namespace

LANGID GetUserDefaultUILanguage()
{
    const std::string locale = Quenlor::Posix::FirstOf({"LC_ALL", "LC_MESSAGES", "LANG"});
    const std::string_view code = std::string_view{locale}.substr(0, locale.find_first_of("_.@"));
    for (const Language& language : Languages)
    {
        if (language.code == code)
            return language.id;
    }
    return English;
}
