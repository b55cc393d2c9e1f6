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
constexpr std::wstring_view ExtendedPrefix = LR"(\\?\)";

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

/// A path cut at its seams; the four parts joined are the path again.
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

std::vector<std::wstring_view> Components(std::wstring_view path)
{
    std::vector<std::wstring_view> components;
    for (std::size_t start = 0; start < path.length();)
    {
        const std::size_t end = std::min(path.find_first_of(Separators, start), path.length());
        if (end != start)
            components.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return components;
}

/// Resolves `.` and `..`. Above the root there is nothing to go up to; a relative path keeps its leading `..`.
std::vector<std::wstring_view> Resolve(const std::vector<std::wstring_view>& components, bool isRooted)
{
    std::vector<std::wstring_view> resolved;
    for (const std::wstring_view component : components)
    {
        if (component == L".")
            continue;
        const bool goesUp = component == L"..";
        if (goesUp && !resolved.empty() && resolved.back() != L"..")
            resolved.pop_back();
        else if (!goesUp || !isRooted)
            resolved.push_back(component);
    }
    return resolved;
}

std::wstring NormaliseDevice(std::wstring_view device)
{
    if (!StartsWithTwoSeparators(device))
        return std::wstring{device};
    std::wstring result = L"\\";
    for (const std::wstring_view component : Components(device))
        (result += L'\\') += component;
    if (IsSeparator(device.back())) // behind a server without a share
        result += L'\\';
    return result;
}

std::wstring Normalise(std::wstring_view path)
{
    const std::wstring_view device = path.substr(0, DeviceLength(path));
    const std::wstring_view rest = path.substr(device.length());
    const bool isServer = StartsWithTwoSeparators(device);
    const bool isRooted = isServer || (!rest.empty() && IsSeparator(rest.front()));

    std::wstring result = NormaliseDevice(device);
    if (!rest.empty() && IsSeparator(rest.front()))
        result += L'\\';
    const std::vector<std::wstring_view> components = Resolve(Components(rest), isRooted);
    if (result.empty() && !components.empty() && DeviceLength(components.front()) != 0)
        result = LR"(.\)"; // what is left of a relative path must not become that of a drive
    for (std::size_t i = 0; i < components.size(); ++i)
    {
        if (i != 0)
            result += L'\\';
        result += components[i];
    }
    if (components.empty())
        return result.empty() ? L"." : result;
    if (IsSeparator(rest.back()))
        result += L'\\';
    return result;
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
    std::wstring_view appended = View(component);
    if (appended.empty())
        return *this;
    std::wstring path;
    path.reserve(m_path.length() + 1 + appended.length());
    path.append(m_path.c_str(), m_path.length());
    if (!path.empty())
    {
        appended.remove_prefix(std::min(appended.find_first_not_of(Separators), appended.length()));
        if (!IsSeparator(path.back()))
            path += L'\\';
    }
    path += appended;
    m_path = std::move(path);
    return *this;
}

void QnFileName::AppendSeparator()
{
    std::wstring path{m_path.c_str(), m_path.length()};
    if (path.empty() || IsSeparator(path.back()))
        return;
    path += L'\\';
    m_path = std::move(path);
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
    std::wstring_view directory = cut.directory;
    // The separator of a root belongs to its name: "C:" and "C:\" are two different folders.
    const std::size_t lastOfName = directory.find_last_not_of(Separators);
    if (lastOfName != std::wstring_view::npos)
        directory = directory.substr(0, lastOfName + 1);
    else if (StartsWithTwoSeparators(cut.device))
        directory = {};
    else
        directory = directory.substr(0, 1);
    return std::wstring{cut.device}.append(directory);
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
    if (source.empty() || source.starts_with(ExtendedPrefix))
        out = std::wstring{source};
    else
        out = Normalise(source);
    return QnFileNameStatus::Success;
}
} // namespace Quenlor
