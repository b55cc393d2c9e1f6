#include <Quenlor/QnFileName.h>

#include <dlfcn.h>
#include <link.h>
#include <string>
#include <system_error>

#include "posix/Executable.h"

namespace Quenlor
{
QuenlorStatus QnGetModuleFileName(QnFileName& out, void* module)
{
    const link_map* loaded = nullptr;
    if (module && ::dlinfo(module, RTLD_DI_LINKMAP, &loaded) != 0)
    {
        out = {};
        return QuenlorStatus::NotFound;
    }
    // The loader gives the program itself no name.
    std::error_code error;
    const std::string path = loaded && loaded->l_name[0] != '\0' ? std::filesystem::absolute(loaded->l_name, error)
                                                                 : std::filesystem::path{Posix::ExecutablePath()};
    out.SetNameUtf8(path.c_str());
    return path.empty() ? QuenlorStatus::NotFound : QuenlorStatus::Success;
}
} // namespace Quenlor
