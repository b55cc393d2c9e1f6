#include <Quenlor/QnFileName.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "posix/Executable.h"
#include "posix/FileDescriptor.h"
#include "posix/NativePath.h"
#include "posix/NextVersion.h"
#include "posix/ReadFile.h"
#include "posix/RetryInterrupted.h"

namespace Quenlor
{
namespace
{
using namespace std::chrono_literals;

constexpr char TemporaryPrefix[] = ".quenlor-copy-";

std::string Native(const wchar_t* path, bool& exists)
{
    const Utf8String utf8 = QnFileName{path}.GetNameUtf8();
    return Posix::NativePath({utf8.data(), utf8.length()}, exists);
}

/// Removes what processes that were killed while copying left in a folder. The file of a running copy is younger.
void RemoveAbandonedCopies(const std::string& folder)
{
    const std::filesystem::file_time_type anHourAgo = std::filesystem::file_time_type::clock::now() - 1h;
    std::error_code error;
    for (std::filesystem::directory_iterator entry{folder, error}, end; !error && entry != end; entry.increment(error))
    {
        std::error_code gone; // another process may be removing it too
        if (entry->path().filename().string().starts_with(TemporaryPrefix) &&
            entry->last_write_time(gone) < anHourAgo && !gone)
            ::unlink(entry->path().c_str());
    }
}

/// The file that a copy is written to. Only the user can read and write it, whatever the mode of the original.
Posix::NextVersion MakeCopy(const Posix::FileDescriptor& folder, const std::string& folderName, bool overwrite)
{
    if (!overwrite)
    {
        Posix::NextVersion nameless{folder};
        if (nameless)
            return nameless;
    }
    RemoveAbandonedCopies(folderName);
    return {folder, TemporaryPrefix + Posix::RandomName(), S_IRUSR | S_IWUSR};
}

bool CopyContents(const Posix::FileDescriptor& source, const Posix::FileDescriptor& destination) noexcept
{
    std::array<char, 65536> buffer;
    for (;;)
    {
        const ssize_t length =
            Posix::RetryInterrupted([&] { return ::read(source.get(), buffer.data(), buffer.size()); });
        if (length <= 0)
            return length == 0;
        if (!Posix::WriteAll(destination, {buffer.data(), static_cast<std::size_t>(length)}))
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

    const std::filesystem::path target{to};
    const std::string folderName = target.has_parent_path() ? target.parent_path().string() : ".";
    const Posix::FileDescriptor input = Posix::OpenFile(from);
    const Posix::FileDescriptor folder{
        Posix::RetryInterrupted([&] { return ::open(folderName.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); })};
    if (!input || !folder)
        return QnFileNameStatus::Failed;
    Posix::NextVersion copy = MakeCopy(folder, folderName, overwrite);
    if (!copy || !CopyContents(input, copy.File()))
        return QnFileNameStatus::Failed;
    const std::string name = target.filename().string();
    if (overwrite ? copy.Replace(name) : copy.TakeFree(name))
        return QnFileNameStatus::Success;
    // A file that exists by now is as good; a dangling link takes the name too, but is not a file.
    std::error_code error;
    const bool isThere = !overwrite && errno == EEXIST && std::filesystem::exists(target, error);
    return isThere ? QnFileNameStatus::Success : QnFileNameStatus::Failed;
}

QuenlorStatus QnGetModuleFileName(QnFileName& out, void* module)
{
    const link_map* loaded = nullptr;
    if (module && ::dlinfo(module, RTLD_DI_LINKMAP, &loaded) != 0)
    {
        out = {};
        return QuenlorStatus::NotFound;
    }
    // The loader gives the program itself no name.
    std::error_code error;
    const std::string path = loaded && loaded->l_name[0] != '\0' ? std::filesystem::absolute(loaded->l_name, error)
                                                                 : std::filesystem::path{Posix::ExecutablePath()};
    out.SetNameUtf8(path.c_str());
    return path.empty() ? QuenlorStatus::NotFound : QuenlorStatus::Success;
}
} // namespace Quenlor
