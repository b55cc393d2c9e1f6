#include <Quenlor/QnFileName.h>

#include <array>
#include <climits>
#include <dlfcn.h>
#include <link.h>
#include <string>
#include <system_error>
#include <unistd.h>

namespace Quenlor
{
namespace
{
/// Empty when the system does not tell.
std::string Executable()
{
    std::array<char, PATH_MAX> buffer;
    const ssize_t length = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
    return length < 0 ? std::string{} : std::string{buffer.data(), static_cast<std::size_t>(length)};
}
} // namespace

QuenlorStatus QnGetModuleFileName(QnFileName& out, void* module)
{
    out = {};
    if (!module)
    {
        const std::string executable = Executable();
        out.SetNameUtf8(executable.c_str());
        return executable.empty() ? QuenlorStatus::NotFound : QuenlorStatus::Success;
    }
    std::error_code error;
    const link_map* loaded = nullptr;
    if (::dlinfo(module, RTLD_DI_LINKMAP, &loaded) != 0)
        return QuenlorStatus::NotFound;
    if (loaded->l_name[0] == '\0') // the loader gives the program itself no name
        return QnGetModuleFileName(out, nullptr);
    out.SetNameUtf8(std::filesystem::absolute(loaded->l_name, error).c_str());
    return error ? QuenlorStatus::NotFound : QuenlorStatus::Success;
}
} // namespace Quenlor
