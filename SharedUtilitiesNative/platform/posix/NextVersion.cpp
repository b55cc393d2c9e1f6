#include "posix/NextVersion.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "posix/RetryInterrupted.h"

namespace Quenlor::Posix
{
namespace
{
constexpr char OpenFiles[] = "/proc/self/fd/"; // a container may lack it

FileDescriptor OpenAt(const FileDescriptor& folder, const char* name, int flags, mode_t mode)
{
    return FileDescriptor{
        RetryInterrupted([&] { return ::openat(folder.get(), name, O_WRONLY | O_CLOEXEC | flags, mode); })};
}
} // namespace

bool WriteAll(const FileDescriptor& file, std::string_view text) noexcept
{
    while (!text.empty())
    {
        const ssize_t written = RetryInterrupted([&] { return ::write(file.get(), text.data(), text.size()); });
        if (written < 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool Sync(const FileDescriptor& file) noexcept
{
    return RetryInterrupted([&] { return ::fsync(file.get()); }) == 0;
}

std::string RandomName()
{
    // Not std::random_device, which may open a file and throws when it cannot. This fails only where the kernel is
    // older than 3.17; then the name is one that is taken sooner or later, and the caller's O_EXCL finds out.
    std::array<unsigned char, 16> bytes{};
    [[maybe_unused]] const int status = ::getentropy(bytes.data(), bytes.size());
    std::string name;
    for (const unsigned char byte : bytes)
        name += static_cast<char>('a' + byte % 26);
    return name;
}

NextVersion::NextVersion(const FileDescriptor& folder) : m_folder{&folder}
{
    if (::access(OpenFiles, X_OK) == 0) // by which it gets its name
        m_file = OpenAt(folder, ".", O_TMPFILE, S_IRUSR | S_IWUSR);
}

NextVersion::NextVersion(const FileDescriptor& folder, std::string name, mode_t mode)
    : m_folder{&folder}, m_file{OpenAt(folder, name.c_str(), O_CREAT | O_EXCL | O_NOFOLLOW, mode)}
{
    if (m_file)
        m_name = std::move(name);
}

NextVersion::~NextVersion()
{
    if (!m_name.empty())
        ::unlinkat(m_folder->get(), m_name.c_str(), 0);
}

bool NextVersion::Replace(const std::string& file)
{
    if (!Sync(m_file) || ::renameat(m_folder->get(), m_name.c_str(), m_folder->get(), file.c_str()) != 0)
        return false;
    m_name.clear();
    return true;
}

bool NextVersion::TakeFree(const std::string& file)
{
    if (!Sync(m_file))
        return false;
    if (m_name.empty())
    {
        const std::string self = OpenFiles + std::to_string(m_file.get());
        return ::linkat(AT_FDCWD, self.c_str(), m_folder->get(), file.c_str(), AT_SYMLINK_FOLLOW) == 0;
    }
    if (::renameat2(m_folder->get(), m_name.c_str(), m_folder->get(), file.c_str(), RENAME_NOREPLACE) == 0)
    {
        m_name.clear();
        return true;
    }
    // Not every file system knows that kind of renaming; those have hard links.
    return errno == EINVAL && ::linkat(m_folder->get(), m_name.c_str(), m_folder->get(), file.c_str(), 0) == 0;
}
} // namespace Quenlor::Posix
