#include <cstdlib>
#include <memory>

#include <Platform/Win32.h>

#include "IniFiles.h"

namespace Benchmarks
{
namespace
{
/// The bytes of a file in memory.
struct Bytes
{
    explicit Bytes(const std::string& path)
    {
        const HANDLE file = ::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        const DWORD size = ::GetFileSize(file, nullptr);
        bytes = std::make_unique_for_overwrite<char[]>(size);
        DWORD count = 0;
        if (!::ReadFile(file, bytes.get(), size, &count, nullptr) || count != size)
            std::abort();
        ::CloseHandle(file);
    }

    std::unique_ptr<char[]> bytes;
};

const bool added = AddLoading<Bytes>("system calls");
} // namespace
} // namespace Benchmarks
