#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status = {};
        ::fstat(file, &status);
        const auto size = static_cast<std::size_t>(status.st_size);
        bytes = std::make_unique_for_overwrite<char[]>(size);
        if (::read(file, bytes.get(), size) != status.st_size)
            std::abort();
        ::close(file);
    }

    std::unique_ptr<char[]> bytes;
};

const bool added = AddLoading<Bytes>("system calls");
} // namespace
} // namespace Benchmarks
