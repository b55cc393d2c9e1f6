#include "registry/RegistryPath.h"

#include <array>

#include "posix/CaseFolding.h"
#include "registry/RegistryText.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
struct Root
{
    HKEY key;
    std::string_view name;
};

const std::array<Root, 3>& Roots() noexcept
{
    static const std::array<Root, 3> roots{Root{HKEY_CLASSES_ROOT, "HKEY_CLASSES_ROOT"},
                                           Root{HKEY_CURRENT_USER, "HKEY_CURRENT_USER"},
                                           Root{HKEY_LOCAL_MACHINE, "HKEY_LOCAL_MACHINE"}};
    return roots;
}

bool IsLegal(std::string_view name, std::size_t maxLength)
{
    return name.find_first_of(std::string_view{"\r\n\0", 3}) == std::string_view::npos &&
           (name.size() <= maxLength || Utf16Length(name) <= maxLength); // which is never more than the bytes
}
} // namespace

bool NextLevel(std::string_view& path, std::string_view& level) noexcept
{
    const std::size_t start = path.find_first_not_of('\\');
    if (start == std::string_view::npos)
        return false;
    const std::size_t end = path.find('\\', start);
    level = path.substr(start, end - start);
    path = end == std::string_view::npos ? std::string_view{} : path.substr(end);
    return true;
}

void AppendToPath(std::string& path, std::string_view below)
{
    for (std::string_view level; NextLevel(below, level);)
    {
        if (!path.empty())
            path += '\\';
        path += level;
    }
}

bool IsLegalKeyPath(std::string_view path)
{
    if (!IsLegal(path, MaxPathLength))
        return false;
    std::size_t levels = 0;
    for (std::string_view level; NextLevel(path, level); ++levels)
    {
        if (levels == MaxLevels || !IsLegal(level, MaxKeyNameLength))
            return false;
    }
    return true;
}

bool IsLegalValueName(std::string_view name)
{
    return IsLegal(name, MaxValueNameLength);
}

std::string_view RootName(HKEY root) noexcept
{
    for (const Root& candidate : Roots())
    {
        if (candidate.key == root)
            return candidate.name;
    }
    return {};
}

HKEY RootOfName(std::string_view name)
{
    const std::string folded = Posix::FoldCase(name);
    for (const Root& candidate : Roots())
    {
        if (candidate.name == folded)
            return candidate.key;
    }
    return nullptr;
}
} // namespace Quenlor::StandIn::Registry
