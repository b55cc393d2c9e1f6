// Whatever a registry file holds, what was understood of it survives being written and read again, in both forms.

#include <string>
#include <string_view>

#include "Fuzz.h"
#include "registry/Key.h"
#include "registry/RegistryFileReader.h"
#include "registry/RegistryFileWriter.h"

using namespace Quenlor::StandIn::Registry;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Key first;
    ReadRegistryFile(TextOf(data, size), HKEY_CURRENT_USER, first);
    for (const RegistryFileForm form : {RegistryFileForm::Hive, RegistryFileForm::Windows})
    {
        Key second;
        const std::string written = WriteRegistryFile(first, "HKEY_CURRENT_USER", form);
        const RegistryFileResult result = ReadRegistryFile(written, HKEY_CURRENT_USER, second);
        Check(result.isRegistryFile && result.problems.empty());
        Check(second == first);
    }
    return 0;
}
