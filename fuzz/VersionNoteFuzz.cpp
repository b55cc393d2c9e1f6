// Any file in place of an executable: it has a version or none, and both functions say the same.

#include <Platform/Win32.h>

#include <string>

#include "Fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string path = FileOf(TextOf(data, size));
    const DWORD length = ::GetFileVersionInfoSizeA(path.c_str(), nullptr);
    VS_FIXEDFILEINFO info{};
    const BOOL isRead = ::GetFileVersionInfoA(path.c_str(), 0, sizeof info, &info);
    Check(length == (isRead ? sizeof info : 0));
    Check(!isRead || info.dwSignature == 0xFEEF04BD);
    return 0;
}
