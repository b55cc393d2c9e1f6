// Any text for a path, and a line before it for a component: what the operations on paths promise holds.

#include <Quenlor/QnFileName.h>
#include <Quenlor/QnStringUtilities.h>

#include <algorithm>
#include <string>

#include "Fuzz.h"

using namespace Quenlor;

namespace
{
bool IsSeparator(wchar_t character)
{
    return character == L'\\' || character == L'/';
}

bool StartsRooted(const std::wstring& path)
{
    return !path.empty() && IsSeparator(path.front());
}

std::wstring Fixed(const std::wstring& path)
{
    WString fixed;
    Check(QnFileName::FixPathName(fixed, path.c_str()) == QnFileNameStatus::Success);
    return fixed.c_str();
}

std::wstring WithSeparator(const std::wstring& path)
{
    QnFileName name{path};
    name.AppendSeparator();
    return name.GetName();
}

/// Another spelling: slashes, and each doubled, where they cannot change what is a server.
std::wstring Respelled(const std::wstring& path)
{
    std::wstring other;
    for (const wchar_t character : path)
        other += IsSeparator(character) && other.length() >= 2 ? L"//" : std::wstring{character};
    return other;
}

void CheckFixing(const std::wstring& path)
{
    const std::wstring fixed = Fixed(path);
    Check(Fixed(fixed) == fixed);
    if (path.starts_with(LR"(\\?\)"))
        return;
    Check(Fixed(Respelled(path)) == fixed);
    Check(fixed.find(L'/') == std::wstring::npos && fixed.find(L"\\\\", 1) == std::wstring::npos);
    Check(fixed.empty() == path.empty());
    Check(StartsRooted(fixed) == StartsRooted(path)); // relative stays relative: never the root of a drive
    Check(!QnFileName(fixed).IsAbsolutePath() || QnFileName(path).IsAbsolutePath());
}

void CheckParts(const std::wstring& path)
{
    const QnFileName folder{QnFileName::DeviceAndDirectory, path.c_str()};
    const QnFileName file{QnFileName::FileNameAndExtension, path.c_str()};
    Check(std::wstring{folder.GetName()} + file.GetName() == path);
    Check(std::wstring{file.GetName()}.starts_with(QnFileName::GetFileNameWithoutExtension(path.c_str()).c_str()));
    // Going up comes to an end.
    Check(path.starts_with(QnFileName::GetDirectoryName(path.c_str()).c_str()));
}

void CheckAppending(const std::wstring& path, const std::wstring& component)
{
    Check(WithSeparator(WithSeparator(path)) == WithSeparator(path));
    Check(path.empty() == WithSeparator(path).empty());

    const std::wstring joined = QnFileName(path).AppendToPath(component.c_str()).GetName();
    Check(path.empty() || joined.starts_with(path));
    Check(path.empty() || StartsRooted(joined) == StartsRooted(path));
    const bool isPlain = !component.empty() && std::ranges::none_of(component, IsSeparator);
    if (path.empty() || !isPlain)
        return;
    Check(joined == WithSeparator(path) + component);
    const bool isServer = path.length() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]); // may become a share
    Check(isServer ||
          Fixed(WithSeparator(QnFileName::GetDirectoryName(joined.c_str()).c_str())) == Fixed(WithSeparator(path)));
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view input = TextOf(data, size);
    WString component;
    WString path;
    QnStringUtilities::Utf8ToWChar(component, TakeLine(input).c_str());
    QnStringUtilities::Utf8ToWChar(path, std::string{input}.c_str());
    CheckFixing(path.c_str());
    CheckParts(path.c_str());
    CheckAppending(path.c_str(), component.c_str());
    return 0;
}
