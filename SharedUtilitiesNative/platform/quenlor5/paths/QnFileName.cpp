#include <Quenlor/QnFileName.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Quenlor/QnStringUtilities.h>

namespace Quenlor
{
namespace
{
constexpr std::wstring_view Separators = L"\\/";

std::wstring_view View(const wchar_t* text)
{
    return text ? std::wstring_view{text} : std::wstring_view{};
}

constexpr bool IsSeparator(wchar_t character) noexcept
{
    return character == L'\\' || character == L'/';
}

constexpr bool IsLetter(wchar_t character) noexcept
{
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

bool StartsWithTwoSeparators(std::wstring_view path) noexcept
{
    return path.length() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]);
}

/// Where the system has one root, two slashes are that root, and only `\\` starts a server's name.
constexpr bool SystemHasOneRoot = std::filesystem::path::preferred_separator == '/';

/// The length of `C:` or `\\server\share` at the start of a path; 0 when it has no device.
std::size_t DeviceLength(std::wstring_view path) noexcept
{
    if (path.length() >= 2 && IsLetter(path[0]) && path[1] == L':')
        return 2;
    const bool isServer = SystemHasOneRoot ? path.starts_with(LR"(\\)") : StartsWithTwoSeparators(path);
    if (!isServer || path.length() == 2 || IsSeparator(path[2]))
        return 0;
    const std::size_t serverEnd = path.find_first_of(Separators, 2);
    const std::size_t share = path.find_first_not_of(Separators, serverEnd);
    return std::min(path.find_first_of(Separators, share), path.length());
}

/// The four parts of a path, which joined give the path again.
struct PathParts
{
    std::wstring_view device;
    std::wstring_view directory;
    std::wstring_view baseName;
    std::wstring_view extension;
};

PathParts Cut(std::wstring_view path)
{
    PathParts parts;
    parts.device = path.substr(0, DeviceLength(path));
    std::wstring_view rest = path.substr(parts.device.length());
    const std::size_t directoryLength = rest.find_last_of(Separators) + 1; // npos + 1 is 0
    parts.directory = rest.substr(0, directoryLength);
    rest.remove_prefix(directoryLength);
    std::size_t dot = rest.rfind(L'.');
    if (dot == std::wstring_view::npos || dot == 0 || rest == L"..")
        dot = rest.length();
    parts.baseName = rest.substr(0, dot);
    parts.extension = rest.substr(dot);
    return parts;
}

/// The components of a path without `.`, and with `..` resolved. A `..` at the root is dropped; a relative path keeps
/// its leading `..`.
std::vector<std::wstring_view> Components(std::wstring_view path, bool isRooted)
{
    std::vector<std::wstring_view> components;
    for (std::size_t start = 0; start < path.length();)
    {
        const std::size_t end = std::min(path.find_first_of(Separators, start), path.length());
        const std::wstring_view component = path.substr(start, end - start);
        const bool goesUp = component == L"..";
        if (goesUp && !components.empty() && components.back() != L"..")
            components.pop_back();
        else if (!component.empty() && component != L"." && !(goesUp && isRooted))
            components.push_back(component);
        start = end + 1;
    }
    return components;
}

std::wstring Normalise(std::wstring_view path)
{
    const std::wstring_view device = path.substr(0, DeviceLength(path));
    const std::wstring_view rest = path.substr(device.length());
    const bool isRooted = !rest.empty() && IsSeparator(rest.front());
    const std::vector<std::wstring_view> components = Components(rest, isRooted);

    std::wstring result;
    for (const wchar_t character : device)
    {
        if (!IsSeparator(character))
            result += character;
        else if (result.length() < 2 || result.back() != L'\\') // two before a server's name
            result += L'\\';
    }
    if (isRooted)
        result += L'\\';
    if (result.empty() && !components.empty() && DeviceLength(components.front()) != 0)
        result = LR"(.\)"; // what is left of a relative path must not become that of a drive
    for (const std::wstring_view component : components)
        (result += component) += L'\\';
    if (!components.empty() && !IsSeparator(rest.back()))
        result.pop_back();
    return result.empty() ? L"." : result;
}
} // namespace

QnFileName::QnFileName(FileNameParts parts, const wchar_t* fullPath)
{
    const PathParts cut = Cut(View(fullPath));
    std::wstring kept;
    if (parts & Device)
        kept += cut.device;
    if (parts & Directory)
        kept += cut.directory;
    if (parts & BaseName)
        kept += cut.baseName;
    if (parts & Extension)
        kept += cut.extension;
    m_path = std::move(kept);
}

void QnFileName::SetName(const wchar_t* path)
{
    m_path = path;
}

void QnFileName::SetNameUtf8(const char* path)
{
    QnStringUtilities::Utf8ToWChar(m_path, path);
}

Utf8String QnFileName::GetNameUtf8() const
{
    Utf8String name;
    QnStringUtilities::WCharToUtf8(name, m_path.c_str(), m_path.length());
    return name;
}

QnFileName& QnFileName::AppendToPath(const wchar_t* component)
{
    std::wstring appended{View(component)};
    if (appended.empty())
        return *this;
    if (!m_path.empty())
        appended.erase(0, appended.find_first_not_of(Separators));
    AppendSeparator();
    m_path = std::wstring{m_path.c_str(), m_path.length()} += appended;
    return *this;
}

void QnFileName::AppendSeparator()
{
    std::wstring path{m_path.c_str(), m_path.length()};
    if (!path.empty() && !IsSeparator(path.back()))
        m_path = path += L'\\';
}

bool QnFileName::IsAbsolutePath() const noexcept
{
    const std::wstring_view path{m_path.c_str(), m_path.length()};
    const bool isDrive = path.length() >= 3 && IsLetter(path[0]) && path[1] == L':' && IsSeparator(path[2]);
    const bool isServer = StartsWithTwoSeparators(path) && DeviceLength(path) != 0;
    const bool isBelowTheRoot = SystemHasOneRoot && !path.empty() && IsSeparator(path[0]);
    return isDrive || isServer || isBelowTheRoot;
}

WString QnFileName::GetDirectoryName(const wchar_t* path)
{
    const PathParts cut = Cut(View(path));
    std::size_t length = cut.directory.find_last_not_of(Separators) + 1; // npos + 1 is 0
    // The separator of a root belongs to its name: "C:" and "C:\" are two different folders.
    if (length == 0 && !cut.directory.empty() && !StartsWithTwoSeparators(cut.device))
        length = 1;
    return std::wstring{cut.device}.append(cut.directory, 0, length);
}

WString QnFileName::GetFileNameWithoutExtension(const wchar_t* path)
{
    return std::wstring{Cut(View(path)).baseName};
}

QnFileNameStatus QnFileName::FixPathName(WString& out, const wchar_t* path)
{
    if (!path)
    {
        out = {};
        return QnFileNameStatus::InvalidName;
    }
    const std::wstring_view source{path};
    out = source.empty() || source.starts_with(LR"(\\?\)") ? std::wstring{source} : Normalise(source);
    return QnFileNameStatus::Success;
}
} // namespace Quenlor
