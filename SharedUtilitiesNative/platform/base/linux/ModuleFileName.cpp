#include <Quenlor/QnFileName.h>

#include <dlfcn.h>
#include <link.h>
#include <system_error>

namespace Quenlor
{
QuenlorStatus QnGetModuleFileName(QnFileName& out, void* module)
{
    out = {};
    std::error_code error;
    if (!module)
    {
        out.SetNameUtf8(std::filesystem::read_symlink("/proc/self/exe", error).c_str());
        return error ? QuenlorStatus::NotFound : QuenlorStatus::Success;
    }
    const link_map* loaded = nullptr;
    if (::dlinfo(module, RTLD_DI_LINKMAP, &loaded) != 0)
        return QuenlorStatus::NotFound;
    if (loaded->l_name[0] == '\0') // the loader gives the program itself no name
        return QnGetModuleFileName(out, nullptr);
    out.SetNameUtf8(std::filesystem::absolute(loaded->l_name, error).c_str());
    return error ? QuenlorStatus::NotFound : QuenlorStatus::Success;
}
} // namespace Quenlor
