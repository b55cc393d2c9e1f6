#include "DirectoryConfig.h"

#include <Platform/Win32.h>

namespace Quenlor::Fraxo::SharedUtilities::Native
{
namespace
{
int EncodedLength(UINT codePage, const WString& text)
{
    return ::WideCharToMultiByte(codePage, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
}

bool IsSupported(const QnFileName& name)
{
    return DirectoryConfig::IsFileNameSupportedInCurrentCulture(name.GetNameUtf8()) != 0;
}
} // namespace

int DirectoryConfig::HasUnicodeChars(const Utf8String& name)
{
    const WString wide{name.c_str(), false};
    BOOL isSubstituteUsed = FALSE;
    ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.c_str(), -1, nullptr, 0, nullptr, &isSubstituteUsed);
    return isSubstituteUsed;
}

// The lengths are compared, not the characters: a letter with an accent is unsupported.
int DirectoryConfig::IsFileNameSupportedInCurrentCulture(const Utf8String& name)
{
    const WString wide{name.c_str(), false};
    return EncodedLength(CP_ACP, wide) == EncodedLength(CP_UTF8, wide) ? 1 : 0;
}

Utf8String DirectoryConfig::GetNormalizedFileName(const QnFileName& path)
{
    // Fixed, and its content is the answer whatever the calls below return: a path too long for it leaves it empty.
    wchar_t buffer[MAX_PATH] = {};
    if (::GetLongPathNameW(path.GetName(), buffer, MAX_PATH) == 0)
        return {};
    const QnFileName file{QnFileName::FileNameAndExtension, buffer};
    const QnFileName directory{QnFileName::DeviceAndDirectory, buffer};
    if (!IsSupported(file))
        ::GetShortPathNameW(path.GetName(), buffer, MAX_PATH);
    else if (!IsSupported(directory))
    {
        ::GetShortPathNameW(directory.GetName(), buffer, MAX_PATH);
        return QnFileName{buffer}.AppendToPath(file.GetName()).GetNameUtf8();
    }
    return QnFileName{buffer}.GetNameUtf8();
}
} // namespace Quenlor::Fraxo::SharedUtilities::Native
