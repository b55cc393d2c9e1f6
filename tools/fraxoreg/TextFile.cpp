#include "TextFile.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "Operations.h"
#include "posix/NextVersion.h"

namespace FraxoReg
{
bool FileExists(const std::string& path) noexcept
{
    return ::access(path.c_str(), F_OK) == 0;
}

void WriteTextFile(const std::string& path, std::string_view text, mode_t mode)
{
    constexpr char refusal[] = "Unable to write to the file.\n";
    std::error_code none;
    const std::filesystem::path real = std::filesystem::canonical(path, none); // so that a link stays one
    const std::string target = real.empty() ? path : real.string();
    struct stat former;
    if (::stat(target.c_str(), &former) == 0 && !S_ISREG(former.st_mode))
        throw Failure{refusal + path + " is not a file; - is the standard output."};
    if (!Quenlor::Posix::ReplaceFile(target, text, mode))
        throw Failure{refusal + path + ": " + std::generic_category().message(errno) + '.'};
}
} // namespace FraxoReg
