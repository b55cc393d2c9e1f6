// Three versions, a line each: they have one order, which is that of the numbers that the C library reads.

#include <array>
#include <cctype>
#include <cstdio>
#include <string>

#include "Fuzz.h"
#include "VersionConfig.h"

namespace
{
/// @return whether sscanf is defined for it: numbers that fit an int
bool Read(const std::string& version, std::array<std::uint16_t, 4>& words)
{
    int digits = 0;
    for (const char character : version)
    {
        digits = std::isdigit(static_cast<unsigned char>(character)) ? digits + 1 : 0;
        if (digits > 9)
            return false;
    }
    int parts[4] = {};
    static_cast<void>(std::sscanf(version.c_str(), "%d.%d.%d.%d", &parts[0], &parts[1], &parts[2], &parts[3]));
    for (std::size_t i = 0; i < words.size(); ++i)
        words[i] = static_cast<std::uint16_t>(parts[i]);
    return true;
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto compare = Quenlor::Fraxo::SharedUtilities::Native::VersionConfig::CompareVersions;
    std::string_view input = TextOf(data, size);
    const std::string a = TakeLine(input), b = TakeLine(input), c = TakeLine(input);
    Check(compare(a, a) == 0);
    Check(compare(a, b) == -compare(b, a));
    Check(compare(a, b) < 0 || compare(b, c) < 0 || compare(a, c) >= 0);
    std::array<std::uint16_t, 4> first{}, second{};
    if (Read(a, first) && Read(b, second))
        Check(compare(a, b) == (first < second ? -1 : first != second));
    return 0;
}
