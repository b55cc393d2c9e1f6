#include <Quenlor/QnFileName.h>

#include <random>
#include <string>
#include <string_view>

#include <Platform/Win32.h>

namespace Quenlor
{
namespace
{
/// Folders must leave room for an 8.3 name, so their limit is the smaller one; it is safe for files as well.
constexpr std::size_t ClassicLimit = MAX_PATH - 12;

std::wstring Native(const wchar_t* path)
{
    QnFileName name;
    name.SetName(path);
    const std::wstring_view text{name.GetName()};
    if (text.length() < ClassicLimit || !name.IsAbsolutePath() || text.starts_with(LR"(\\?\)"))
        return std::wstring{text};
    WString fixed; // the prefix turns the system's own clean-up off
    QnFileName::FixPathName(fixed, path);
    if (std::wstring_view{fixed.c_str()}.starts_with(LR"(\\)"))
        return LR"(\\?\UNC\)" + std::wstring{fixed.c_str() + 2};
    return LR"(\\?\)" + std::wstring{fixed.c_str()};
}

std::wstring TemporaryNameBeside(const wchar_t* destination)
{
    QnFileName name{QnFileName::DeviceAndDirectory, destination};
    std::random_device random;
    const std::wstring suffix = std::to_wstring(random()) + L"-" + std::to_wstring(random());
    return Native((name.GetName() + (L".copy-" + suffix)).c_str());
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

    const std::wstring temporary = TemporaryNameBeside(destination);
    if (!::CopyFileW(from.c_str(), temporary.c_str(), TRUE))
        return QnFileNameStatus::Failed;
    ::SetFileAttributesW(temporary.c_str(), FILE_ATTRIBUTE_NORMAL); // an installed default may be read-only
    const DWORD replace = overwrite ? MOVEFILE_REPLACE_EXISTING : 0;
    if (::MoveFileExW(temporary.c_str(), to.c_str(), replace | MOVEFILE_WRITE_THROUGH))
        return QnFileNameStatus::Success;
    ::DeleteFileW(temporary.c_str());
    return !overwrite && DoesPathExist(destination) ? QnFileNameStatus::Success : QnFileNameStatus::Failed;
}
} // namespace Quenlor
