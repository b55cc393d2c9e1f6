#include <Quenlor/QnFileName.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Platform/Win32.h>

namespace Quenlor
{
namespace
{
/// Folders must leave room for an 8.3 name, so their limit is the smaller one; it is safe for files as well.
constexpr std::size_t ClassicLimit = MAX_PATH - 12;

std::wstring Native(const wchar_t* path)
{
    const QnFileName name{path};
    const std::wstring_view text{name.GetName()};
    if (text.length() < ClassicLimit || !name.IsAbsolutePath() || text.starts_with(LR"(\\?\)"))
        return std::wstring{text};
    WString fixed; // the prefix turns the system's own clean-up off
    QnFileName::FixPathName(fixed, path);
    if (std::wstring_view{fixed.c_str()}.starts_with(LR"(\\)"))
        return LR"(\\?\UNC\)" + std::wstring{fixed.c_str() + 2};
    return LR"(\\?\)" + std::wstring{fixed.c_str()};
}

struct HandleCloser
{
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { ::CloseHandle(handle); }
};
using File = std::unique_ptr<HANDLE, HandleCloser>;

/// None for what is not a file: reading a pipe or a device could take for ever.
File OpenSource(const std::wstring& path)
{
    const HANDLE file =
        ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                      OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    File source{file == INVALID_HANDLE_VALUE ? nullptr : file};
    return source && ::GetFileType(file) == FILE_TYPE_DISK ? std::move(source) : File{};
}

/// A file in its destination's folder that no other program can open, so that whatever of that name can be deleted was
/// left by one that was killed. At the end of its scope it is gone unless it took the destination's place.
class TemporaryFile final
{
public:
    explicit TemporaryFile(const wchar_t* destination)
    {
        const std::wstring folder = QnFileName{QnFileName::DeviceAndDirectory, destination}.GetName();
        RemoveAbandoned(folder);
        std::random_device random;
        m_name = Native((folder + Prefix + std::to_wstring(random()) + L'-' + std::to_wstring(random())).c_str());
        const HANDLE file = ::CreateFileW(m_name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        m_file.reset(file == INVALID_HANDLE_VALUE ? nullptr : file);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (!m_file)
            return;
        m_file.reset();
        ::DeleteFileW(m_name.c_str());
    }

    explicit operator bool() const noexcept { return static_cast<bool>(m_file); }

    bool TakeContents(const File& source) const
    {
        std::array<std::byte, 65536> buffer;
        DWORD length = 0;
        while (::ReadFile(source.get(), buffer.data(), buffer.size(), &length, nullptr))
        {
            DWORD written = 0;
            if (length == 0) // on disk before the name is: a crash must not leave an empty file
                return ::FlushFileBuffers(m_file.get());
            if (!::WriteFile(m_file.get(), buffer.data(), length, &written, nullptr) || written != length)
                return false;
        }
        return false;
    }

    bool MoveTo(const std::wstring& destination, bool overwrite)
    {
        const std::size_t bytes = destination.length() * sizeof(wchar_t);
        std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + bytes);
        auto* const info = ::new (buffer.data()) FILE_RENAME_INFO{};
        info->ReplaceIfExists = overwrite;
        info->FileNameLength = static_cast<DWORD>(bytes);
        std::memcpy(info->FileName, destination.c_str(), bytes);
        if (!::SetFileInformationByHandle(m_file.get(), FileRenameInfo, info, static_cast<DWORD>(buffer.size())))
            return false;
        m_file.reset();
        return true;
    }

private:
    static constexpr wchar_t Prefix[] = L".quenlor-copy-";

    static void RemoveAbandoned(const std::wstring& folder)
    {
        WIN32_FIND_DATAW entry;
        const HANDLE search = ::FindFirstFileW(Native((folder + Prefix + L'*').c_str()).c_str(), &entry);
        if (search == INVALID_HANDLE_VALUE)
            return;
        do
            ::DeleteFileW(Native((folder + entry.cFileName).c_str()).c_str());
        while (::FindNextFileW(search, &entry));
        ::FindClose(search);
    }

    std::wstring m_name;
    File m_file;
};
} // namespace

std::filesystem::path QnFileName::ToNativePath() const
{
    return Native(m_path.c_str());
}

bool QnFileName::DoesPathExist(const wchar_t* path)
{
    return ::GetFileAttributesW(Native(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

QnFileNameStatus QnFileName::CreateNewDirectory(const wchar_t* path)
{
    WString folder = path;
    if (std::wstring_view{folder.c_str()}.ends_with(L'\\') || std::wstring_view{folder.c_str()}.ends_with(L'/'))
        folder = GetDirectoryName(path); // the same folder: only the separator at its end goes
    const std::wstring native = Native(folder.c_str());
    if (native.empty())
        return QnFileNameStatus::InvalidName;
    if (::CreateDirectoryW(native.c_str(), nullptr))
        return QnFileNameStatus::Success;
    if (::GetLastError() == ERROR_PATH_NOT_FOUND)
    {
        const WString parent = GetDirectoryName(folder.c_str());
        const QnFileNameStatus made =
            parent.length() < folder.length() ? CreateNewDirectory(parent.c_str()) : QnFileNameStatus::Failed;
        if (made != QnFileNameStatus::Success && made != QnFileNameStatus::AlreadyExists)
            return made;
        if (::CreateDirectoryW(native.c_str(), nullptr))
            return QnFileNameStatus::Success;
    }
    const DWORD attributes = ::GetFileAttributesW(native.c_str());
    const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    return isFolder ? QnFileNameStatus::AlreadyExists : QnFileNameStatus::Failed;
}

QnFileNameStatus QnFileName::QnCopyFile(const wchar_t* source, const wchar_t* destination, bool overwrite)
{
    const std::wstring from = Native(source);
    const std::wstring to = Native(destination);
    if (from.empty() || to.empty())
        return QnFileNameStatus::InvalidName;
    if (!overwrite && DoesPathExist(destination))
        return QnFileNameStatus::Success;

    const File input = OpenSource(from);
    if (!input)
        return QnFileNameStatus::Failed;
    TemporaryFile output{destination};
    if (output && output.TakeContents(input) && output.MoveTo(to, overwrite))
        return QnFileNameStatus::Success;
    return !overwrite && DoesPathExist(destination) ? QnFileNameStatus::Success : QnFileNameStatus::Failed;
}
} // namespace Quenlor
