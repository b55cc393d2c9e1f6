#include <array>

#include <fcntl.h>
#include <unistd.h>

#include "IniFiles.h"

namespace Benchmarks
{
namespace
{
struct Bytes
{
    explicit Bytes(const std::string& path)
    {
        static std::array<char, std::size_t{64} * 1024> buffer;
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        while (::read(file, buffer.data(), buffer.size()) > 0)
            benchmark::DoNotOptimize(buffer.data());
        ::close(file);
    }
};

const bool added = AddLoading<Bytes>("system calls");
} // namespace
} // namespace Benchmarks
