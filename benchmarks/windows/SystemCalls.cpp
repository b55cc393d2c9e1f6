#include <array>

#include <Platform/Win32.h>

#include "IniFiles.h"

namespace Benchmarks
{
namespace
{
struct Bytes
{
    explicit Bytes(const std::string& path)
    {
        static std::array<char, 64 * 1024> buffer;
        const HANDLE file = ::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        DWORD count = 0;
        while (::ReadFile(file, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) && count != 0)
            benchmark::DoNotOptimize(buffer.data());
        ::CloseHandle(file);
    }
};

const bool added = AddLoading<Bytes>("system calls");
} // namespace
} // namespace Benchmarks
