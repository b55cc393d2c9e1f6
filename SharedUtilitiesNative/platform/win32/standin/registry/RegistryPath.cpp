#include "registry/RegistryPath.h"

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "posix/CaseFolding.h"
#include "registry/RegistryText.h"

namespace Quenlor::StandIn::Registry
{
namespace
{
// The first two are Windows' limits. All lengths are in UTF-16 units.
constexpr std::size_t MaxKeyNameLength = 255;
constexpr std::size_t MaxValueNameLength = 16383;
constexpr std::size_t MaxPathLength = 16383; // a key is written with its whole path
constexpr std::size_t MaxLevels = 512;

constexpr std::string_view RootNames[] = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE"};

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
    // The handles are numbered in the order of the names.
    const auto number = reinterpret_cast<std::uintptr_t>(root) - reinterpret_cast<std::uintptr_t>(HKEY_CLASSES_ROOT);
    return number < std::size(RootNames) ? RootNames[number] : std::string_view{};
}

HKEY RootOfName(std::string_view name)
{
    const std::string folded = Posix::FoldCase(name);
    for (const HKEY root : {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
    {
        if (RootName(root) == folded)
            return root;
    }
    return nullptr;
}
} // namespace Quenlor::StandIn::Registry
