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
/// Folders must leave room for an 8.3 name, so their limit is the smaller one; it is safe for files too.
constexpr std::size_t ClassicLimit = MAX_PATH - 12;

std::wstring Native(const wchar_t* path)
{
    const QnFileName name{path};
    const std::wstring_view text{name.GetName()};
    if (text.length() < ClassicLimit || !name.IsAbsolutePath() || text.starts_with(LR"(\\?\)"))
        return std::wstring{text};
    WString fixed; // after the prefix the system takes the path as it is
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

File Open(const std::wstring& path, DWORD access, DWORD share, DWORD disposition, DWORD flags)
{
    const HANDLE file = ::CreateFileW(path.c_str(), access, share, nullptr, disposition, flags, nullptr);
    return File{file == INVALID_HANDLE_VALUE ? nullptr : file};
}

constexpr wchar_t TemporaryPrefix[] = L".quenlor-copy-";

/// Removes what processes that were killed while copying left in a folder. No other can open the file of a running
/// copy.
void RemoveAbandonedCopies(const std::wstring& folder)
{
    WIN32_FIND_DATAW entry;
    const HANDLE search = ::FindFirstFileW(Native((folder + TemporaryPrefix + L'*').c_str()).c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return;
    do
        ::DeleteFileW(Native((folder + entry.cFileName).c_str()).c_str());
    while (::FindNextFileW(search, &entry));
    ::FindClose(search);
}

bool CopyContents(const File& source, const File& destination)
{
    std::array<std::byte, 65536> buffer;
    DWORD length = 0;
    while (::ReadFile(source.get(), buffer.data(), buffer.size(), &length, nullptr))
    {
        DWORD written = 0;
        if (length == 0) // on disk before the name is: a crash must not leave an empty file
            return ::FlushFileBuffers(destination.get());
        if (!::WriteFile(destination.get(), buffer.data(), length, &written, nullptr) || written != length)
            return false;
    }
    return false;
}

bool Rename(const File& file, const std::wstring& name, bool overwrite)
{
    const std::size_t bytes = name.length() * sizeof(wchar_t);
    std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + bytes);
    auto* const info = ::new (buffer.data()) FILE_RENAME_INFO{};
    info->ReplaceIfExists = overwrite;
    info->FileNameLength = static_cast<DWORD>(bytes);
    std::memcpy(info->FileName, name.c_str(), bytes);
    return ::SetFileInformationByHandle(file.get(), FileRenameInfo, info, static_cast<DWORD>(buffer.size()));
}
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
        folder = GetDirectoryName(path); // the same folder without the separator at its end
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

    const File input = Open(from, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING,
                            FILE_FLAG_SEQUENTIAL_SCAN);
    if (!input || ::GetFileType(input.get()) != FILE_TYPE_DISK) // a pipe or a device could keep the reader waiting
        return QnFileNameStatus::Failed;
    std::wstring temporary = QnFileName{QnFileName::DeviceAndDirectory, destination}.GetName();
    RemoveAbandonedCopies(temporary);
    std::random_device random;
    ((temporary += TemporaryPrefix) += std::to_wstring(random()) + L'-') += std::to_wstring(random());
    const File copy = Open(Native(temporary.c_str()), GENERIC_WRITE | DELETE, 0, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
    if (!copy)
        return QnFileNameStatus::Failed;
    if (CopyContents(input, copy) && Rename(copy, to, overwrite))
        return QnFileNameStatus::Success;
    FILE_DISPOSITION_INFO removal{TRUE}; // when it is closed
    ::SetFileInformationByHandle(copy.get(), FileDispositionInfo, &removal, sizeof removal);
    return !overwrite && DoesPathExist(destination) ? QnFileNameStatus::Success : QnFileNameStatus::Failed;
}

QuenlorStatus QnGetModuleFileName(QnFileName& out, void* module)
{
    std::wstring path(32768, L'\0'); // no path is longer
    const DWORD length =
        ::GetModuleFileNameW(static_cast<HMODULE>(module), path.data(), static_cast<DWORD>(path.size()));
    path.resize(length);
    out.SetName(path.c_str());
    return length == 0 ? QuenlorStatus::NotFound : QuenlorStatus::Success;
}
} // namespace Quenlor
