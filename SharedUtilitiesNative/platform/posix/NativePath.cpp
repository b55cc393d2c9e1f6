#include "posix/NativePath.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <sys/stat.h>

#include "posix/CaseFolding.h"
#include "posix/ReadFile.h"

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

/// Drives and servers name no place here, and their paths must not be taken for relative ones or for the root's.
bool HasDevice(std::string_view path)
{
    const bool isDrive = path.length() >= 2 && path[1] == ':' &&
                         ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
    return isDrive || path.starts_with(R"(\\)");
}

/// The entry of `folder` that differs from `name` in letter case alone; of several the first in byte order, so that
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

/// How much of a path is there in its own spelling, up to a separator; the whole of it is not.
std::size_t ExistingLength(const std::string& path)
{
    std::size_t end = path.rfind('/', path.find_last_not_of('/'));
    while (end != path.npos && end != 0 && !Exists(path.substr(0, end)))
        end = path.rfind('/', end - 1);
    return end == path.npos ? 0 : end;
}

/// The path with every component in the spelling it has on disk, as far as it exists. Starts at the nearest folder that
/// is there, mostly the one that the file should be in.
std::string LookUp(const std::string& path, bool& exists)
{
    std::size_t start = ExistingLength(path);
    std::string found = path.substr(0, start);
    while (start < path.length())
    {
        if (path[start] == '/')
        {
            found += path[start++];
            continue;
        }
        const std::size_t end = std::min(path.find('/', start), path.length());
        const std::string component = path.substr(start, end - start);
        if (Exists(found + component))
            found += component;
        else if (const std::optional<std::string> entry = FindIgnoringCase(found, component))
            found += *entry;
        else
            return found.append(path, start);
        start = end;
    }
    exists = Exists(found);
    return found;
}

/// With the separators of this system, and with `.` and `..` resolved by text as on Windows: the kernel would want the
/// folder before a `..` to exist. Empty for what names no place here.
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
    exists = false;
    std::string native = Spelled(path);
    if (native.empty())
        return native;
    if (Exists(native))
    {
        exists = true;
        return native;
    }
    // Only a name that is not there can be there in another letter case.
    return errno == ENOENT ? LookUp(native, exists) : native;
}

FileDescriptor OpenForReading(std::string_view path)
{
    const std::string native = Spelled(path);
    FileDescriptor file = OpenFile(native);
    if (file || native.empty() || errno != ENOENT)
        return file;
    bool exists = false;
    return OpenFile(LookUp(native, exists));
}
} // namespace Quenlor::Posix
