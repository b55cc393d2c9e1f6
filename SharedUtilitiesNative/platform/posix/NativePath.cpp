#include "posix/NativePath.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <sys/stat.h>

#include "posix/CaseFolding.h"

namespace Quenlor::Posix
{
namespace
{
struct FolderCloser
{
    void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};

bool Exists(const std::string& path)
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0;
}

/// Paths with a drive or a server name nothing here. They must not be taken for relative ones or for the root's.
bool HasDevice(std::string_view path)
{
    const bool isDrive = path.length() >= 2 && path[1] == ':' &&
                         ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
    return isDrive || path.starts_with(R"(\\)");
}

/// The entry of `folder` that differs from `name` only in letter case; of several the first in byte order, so that
/// the answer does not depend on the order in which the file system lists them.
std::optional<std::string> FindIgnoringCase(const std::string& folder, std::string_view name)
{
    const std::unique_ptr<DIR, FolderCloser> entries{::opendir(folder.empty() ? "." : folder.c_str())};
    if (!entries)
        return {};
    const std::string wanted = FoldCase(name);
    std::optional<std::string> found;
    while (const dirent* const entry = ::readdir(entries.get()))
    {
        if (FoldCase(entry->d_name) == wanted && (!found || entry->d_name < *found))
            found = entry->d_name;
    }
    return found;
}

/// The path with every component in the spelling it has on disk, as far as it exists.
std::string LookUp(const std::string& path, bool& exists)
{
    std::string found;
    for (std::size_t end = 0; end < path.length();)
    {
        const std::size_t start = std::min(path.find_first_not_of('/', end), path.length());
        found.append(path, end, start - end);
        end = std::min(path.find('/', start), path.length());
        const std::string component = path.substr(start, end - start);
        found += Exists(found + component) ? component : FindIgnoringCase(found, component).value_or(component);
    }
    exists = Exists(found);
    return found;
}

/// With the separators of this system, and with `.` and `..` resolved by text as on Windows: the kernel would want the
/// folder before a `..` to exist. Empty for a path that names nothing here.
std::string Spelled(std::string_view path)
{
    if (HasDevice(path))
        return {};
    std::string native{path};
    std::replace(native.begin(), native.end(), '\\', '/');
    if (native.find("/.") == native.npos && !native.starts_with('.'))
        return native;
    const bool endsInDots = native.ends_with("/.") || native.ends_with("/..");
    native = std::filesystem::path{native}.lexically_normal();
    if (endsInDots && native.length() > 1 && native.ends_with('/'))
        native.pop_back(); // they may be after the name of a file
    return native;
}
} // namespace

std::string NativePath(std::string_view path, bool& exists)
{
    std::string native = Spelled(path);
    exists = Exists(native);
    // Other errors would be the same in any letter case.
    return !exists && errno == ENOENT ? LookUp(native, exists) : native;
}

RegularFile OpenForReading(std::string_view path)
{
    const std::string native = Spelled(path);
    RegularFile file = OpenFile(native);
    if (file || errno != ENOENT)
        return file;
    bool exists = false;
    return OpenFile(LookUp(native, exists));
}
} // namespace Quenlor::Posix
