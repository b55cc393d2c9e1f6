#include <Quenlor/QnFileName.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "posix/FileDescriptor.h"
#include "posix/NativePath.h"
#include "posix/ReadFile.h"
#include "posix/RetryInterrupted.h"

namespace Quenlor
{
namespace
{
using Posix::RetryInterrupted;
using namespace std::chrono_literals;

constexpr char TemporaryPrefix[] = ".quenlor-copy-";
constexpr char OpenFiles[] = "/proc/self/fd/"; // a container may lack it

std::string Native(const wchar_t* path, bool& exists)
{
    const Utf8String utf8 = QnFileName{path}.GetNameUtf8();
    return Posix::NativePath({utf8.data(), utf8.length()}, exists);
}

/// Removes what processes left in a folder that were killed while they copied. Who is still copying has a young file.
void RemoveAbandonedCopies(const std::string& folder)
{
    const std::filesystem::file_time_type anHourAgo = std::filesystem::file_time_type::clock::now() - 1h;
    std::error_code error;
    for (std::filesystem::directory_iterator entry{folder, error}, end; !error && entry != end; entry.increment(error))
    {
        std::error_code gone; // another process may be at it as well
        if (entry->path().filename().string().starts_with(TemporaryPrefix) &&
            entry->last_write_time(gone) < anHourAgo && !gone)
            ::unlink(entry->path().c_str());
    }
}

/// A file in its destination's folder that nobody else can open. At the end of its scope it is gone unless it took the
/// destination's place. Without a name it is gone as well when the process is killed; with one, the first copy into the
/// folder an hour later removes it.
class TemporaryFile final
{
public:
    enum class Name
    {
        None, ///< Where the file system can do without.
        Random,
    };

    TemporaryFile(const std::string& folder, Name name)
    {
        if (name == Name::None && ::access(OpenFiles, X_OK) == 0) // by which such a file gets its name
            m_file = Posix::FileDescriptor{RetryInterrupted(
                [&] { return ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR); })};
        if (m_file)
            return;
        RemoveAbandonedCopies(folder);
        m_file = Posix::FileDescriptor{RetryInterrupted(
            [&]
            {
            m_name = folder + '/' + TemporaryPrefix + "XXXXXX"; // a call that fails has used it up
            return ::mkostemp(m_name.data(), O_CLOEXEC);
        })};
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (m_file && !m_name.empty())
            ::unlink(m_name.c_str());
    }

    explicit operator bool() const noexcept { return static_cast<bool>(m_file); }
    int get() const noexcept { return m_file.get(); }

    bool Replace(const std::string& destination) const noexcept
    {
        return ::rename(m_name.c_str(), destination.c_str()) == 0;
    }

    /// Takes the destination's place if it is free; that there is a file by now is as good.
    bool Become(const std::string& destination) const
    {
        std::error_code error; // a link to nowhere takes the place as well, but is no file
        return MoveIfFree(destination) || (errno == EEXIST && std::filesystem::exists(destination, error));
    }

private:
    bool MoveIfFree(const std::string& destination) const
    {
        if (m_name.empty())
        {
            const std::string self = OpenFiles + std::to_string(m_file.get());
            return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, destination.c_str(), AT_SYMLINK_FOLLOW) == 0;
        }
        if (::renameat2(AT_FDCWD, m_name.c_str(), AT_FDCWD, destination.c_str(), RENAME_NOREPLACE) == 0)
            return true;
        // Not every file system knows that kind of renaming; those have hard links.
        return errno == EINVAL && ::link(m_name.c_str(), destination.c_str()) == 0;
    }

    std::string m_name; // empty for a file without a name
    Posix::FileDescriptor m_file;
};

bool WriteAll(int file, const char* data, std::size_t length) noexcept
{
    while (length != 0)
    {
        const ssize_t written = RetryInterrupted([&] { return ::write(file, data, length); });
        if (written < 0)
            return false;
        data += written;
        length -= static_cast<std::size_t>(written);
    }
    return true;
}

bool CopyContents(int source, int destination) noexcept
{
    std::array<char, 65536> buffer;
    for (;;)
    {
        const ssize_t length = RetryInterrupted([&] { return ::read(source, buffer.data(), buffer.size()); });
        if (length == 0) // on disk before the name is: a crash must not leave an empty file
            return RetryInterrupted([&] { return ::fsync(destination); }) == 0;
        if (length < 0 || !WriteAll(destination, buffer.data(), static_cast<std::size_t>(length)))
            return false;
    }
}
} // namespace

std::filesystem::path QnFileName::ToNativePath() const
{
    bool exists = false;
    return Native(m_path.c_str(), exists);
}

bool QnFileName::DoesPathExist(const wchar_t* path)
{
    bool exists = false;
    Native(path, exists);
    return exists;
}

QnFileNameStatus QnFileName::CreateNewDirectory(const wchar_t* path)
{
    bool exists = false;
    std::string native = Native(path, exists);
    if (native.empty())
        return QnFileNameStatus::InvalidName;
    if (native.size() > 1 && native.back() == '/')
        native.pop_back();
    std::error_code error;
    const bool created = std::filesystem::create_directories(native, error);
    if (error)
        return QnFileNameStatus::Failed;
    return created ? QnFileNameStatus::Success : QnFileNameStatus::AlreadyExists;
}

QnFileNameStatus QnFileName::QnCopyFile(const wchar_t* source, const wchar_t* destination, bool overwrite)
{
    bool exists = false;
    const std::string from = Native(source, exists);
    const std::string to = Native(destination, exists);
    if (from.empty() || to.empty())
        return QnFileNameStatus::InvalidName;
    if (exists && !overwrite)
        return QnFileNameStatus::Success;

    const std::string folder = std::filesystem::path{to}.parent_path().string();
    const Posix::FileDescriptor input = Posix::OpenFile(from);
    const TemporaryFile output{folder.empty() ? "." : folder,
                               overwrite ? TemporaryFile::Name::Random : TemporaryFile::Name::None};
    if (!input || !output || !CopyContents(input.get(), output.get()))
        return QnFileNameStatus::Failed;
    const bool isInPlace = overwrite ? output.Replace(to) : output.Become(to);
    return isInPlace ? QnFileNameStatus::Success : QnFileNameStatus::Failed;
}
} // namespace Quenlor
