#include <Platform/Win32.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "posix/CaseFolding.h"
#include "posix/NativePath.h"
#include "posix/ReadFile.h"

using Quenlor::Posix::FoldCase;

namespace
{
constexpr std::string_view Blanks = " \t\r\f\v";

std::string_view TrimmedRight(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(Blanks) + 1); // npos + 1 is 0
}

std::string_view Trimmed(std::string_view text)
{
    return TrimmedRight(text.substr(std::min(text.find_first_not_of(Blanks), text.length())));
}

std::string_view WithoutQuotes(std::string_view value)
{
    const bool isQuoted =
        value.length() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return isQuoted ? value.substr(1, value.length() - 2) : value;
}

/// The first value of that name in the first section of that name; later ones are never looked at, as on Windows.
std::optional<std::string_view> FindValue(std::string_view content, std::string_view section, std::string_view name)
{
    const std::string wantedSection = FoldCase(section);
    const std::string wantedName = FoldCase(name);
    bool isInside = false;
    while (!content.empty())
    {
        const std::size_t end = std::min(content.find('\n'), content.length());
        const std::string_view line = Trimmed(content.substr(0, end));
        content.remove_prefix(std::min(end + 1, content.length()));
        const std::size_t close = line.rfind(']');
        if (line.starts_with('[') && close != std::string_view::npos)
        {
            if (isInside)
                return {};
            isInside = FoldCase(Trimmed(line.substr(1, close - 1))) == wantedSection;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (isInside && !line.starts_with(';') && equals != std::string_view::npos &&
            FoldCase(Trimmed(line.substr(0, equals))) == wantedName)
            return WithoutQuotes(Trimmed(line.substr(equals + 1)));
    }
    return {};
}
} // namespace

DWORD GetPrivateProfileStringA(LPCSTR section, LPCSTR name, LPCSTR whenMissing, LPSTR buffer, DWORD size, LPCSTR path)
{
    if (!buffer || size == 0)
        return 0;
    buffer[0] = '\0';
    if (!section || !name || !path)
        return 0;
    const Quenlor::Posix::RegularFile file = Quenlor::Posix::OpenForReading(path);
    const std::string content = file ? Quenlor::Posix::ReadAll(file).value_or("") : "";
    const std::string_view value =
        FindValue(content, Trimmed(section), Trimmed(name)).value_or(TrimmedRight(whenMissing ? whenMissing : ""));
    const std::size_t length = value.copy(buffer, size - 1);
    buffer[length] = '\0';
    return static_cast<DWORD>(length);
}
