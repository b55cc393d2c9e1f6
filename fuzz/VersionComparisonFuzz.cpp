// Three versions, a line each: they have one order, which is that of the numbers that the C library reads.

#include <array>
#include <cstdio>
#include <string>

#include "Fuzz.h"
#include "VersionConfig.h"

namespace
{
int Compare(const std::string& first, const std::string& second)
{
    return Quenlor::Fraxo::SharedUtilities::Native::VersionConfig::CompareVersions(first, second);
}

/// What sscanf is defined for: numbers that fit an int.
bool IsReadable(const std::string& version)
{
    constexpr std::size_t longest = 9;
    std::size_t digits = 0;
    for (const char character : version)
    {
        digits = character >= '0' && character <= '9' ? digits + 1 : 0;
        if (digits > longest)
            return false;
    }
    return true;
}

std::array<std::uint16_t, 4> Read(const std::string& version)
{
    int parts[4] = {};
    static_cast<void>(std::sscanf(version.c_str(), "%d.%d.%d.%d", &parts[0], &parts[1], &parts[2], &parts[3]));
    std::array<std::uint16_t, 4> words{};
    for (std::size_t i = 0; i < words.size(); ++i)
        words[i] = static_cast<std::uint16_t>(parts[i]);
    return words;
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view input = TextOf(data, size);
    const std::string a = TakeLine(input);
    const std::string b = TakeLine(input);
    const std::string c = TakeLine(input);
    Check(Compare(a, a) == 0);
    Check(Compare(a, b) == -Compare(b, a));
    Check(Compare(a, b) < 0 || Compare(b, c) < 0 || Compare(a, c) >= 0);
    if (IsReadable(a) && IsReadable(b))
        Check(Compare(a, b) == (Read(a) < Read(b) ? -1 : Read(a) != Read(b)));
    return 0;
}
