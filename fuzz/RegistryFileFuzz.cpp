// Whatever a registry file holds, what was understood of it survives being written and read again, in both forms.

#include <string>
#include <string_view>

#include "Fuzz.h"
#include "registry/Key.h"
#include "registry/RegistryFileReader.h"
#include "registry/RegistryFileWriter.h"
#include "registry/TreeLoader.h"

using namespace Quenlor::StandIn::Registry;

namespace
{
constexpr std::string_view Root = "HKEY_CURRENT_USER";

RegistryFileResult Load(std::string_view text, Key& tree)
{
    TreeLoader loader{HKEY_CURRENT_USER, tree};
    return ReadRegistryFile(text, RegistryFileDialect::Hive, loader);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Key first;
    Load(TextOf(data, size), first);
    const std::string written = WriteRegistryFile(first, Root, RegistryFileForm::Hive);

    Key second;
    const RegistryFileResult result = Load(written, second);
    Check(result.isRegistryFile && result.problems.empty());
    Check(WriteRegistryFile(second, Root, RegistryFileForm::Hive) == written);

    Key exported;
    Check(Load(WriteRegistryFile(first, Root, RegistryFileForm::Windows), exported).isRegistryFile);
    return 0;
}
