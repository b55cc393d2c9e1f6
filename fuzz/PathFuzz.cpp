// Any text as a path: the operations on paths keep their promises.

#include <Quenlor/QnFileName.h>

#include <string>

#include "Fuzz.h"

using namespace Quenlor;

namespace
{
bool IsSeparator(wchar_t character)
{
    return character == L'\\' || character == L'/';
}

std::wstring Fixed(const std::wstring& path)
{
    WString fixed;
    Check(QnFileName::FixPathName(fixed, path.c_str()) == QnFileNameStatus::Success);
    return fixed.c_str();
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::wstring path = QnFileName{Utf8String{TextOf(data, size)}}.GetName();
    const std::wstring fixed = Fixed(path);
    Check(Fixed(fixed) == fixed);
    if (!path.starts_with(LR"(\\?\)"))
    {
        std::wstring respelled; // slashes, and each doubled, where they cannot change what is a server
        for (const wchar_t character : path)
            respelled += IsSeparator(character) && respelled.length() >= 2 ? L"//" : std::wstring{character};
        Check(Fixed(respelled) == fixed);
        Check(fixed.find(L'/') == std::wstring::npos && fixed.find(L"\\\\", 1) == std::wstring::npos);
        Check(fixed.empty() == path.empty() && IsSeparator(fixed[0]) == IsSeparator(path[0])); // stays relative
        Check(!QnFileName(fixed).IsAbsolutePath() || QnFileName(path).IsAbsolutePath());
    }
    const QnFileName folder{QnFileName::DeviceAndDirectory, path.c_str()};
    const std::wstring file = QnFileName{QnFileName::FileNameAndExtension, path.c_str()}.GetName();
    Check(folder.GetName() + file == path);
    Check(file.starts_with(QnFileName::GetFileNameWithoutExtension(path.c_str()).c_str()));
    Check(path.starts_with(QnFileName::GetDirectoryName(path.c_str()).c_str())); // going up comes to an end
    return 0;
}
