// Whatever a registry file holds, what was understood of it survives being written and read again, in both forms.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "registry/RegistryFileReader.h"
#include "registry/RegistryFileWriter.h"
#include "registry/RegistryTree.h"

using namespace Quenlor::StandIn::Registry;

namespace
{
constexpr std::string_view Root = "HKEY_CURRENT_USER";

class Loader final : public RegistryFileHandler
{
public:
    explicit Loader(Key& tree) : m_tree{tree} {}

    bool BeginKey(HKEY root, std::string_view path) override
    {
        if (root != HKEY_CURRENT_USER)
            return false;
        m_key = &m_tree.Create(path);
        return true;
    }
    bool DeleteKey(HKEY root, std::string_view path) override
    {
        if (root == HKEY_CURRENT_USER)
            m_tree.Delete(path);
        return root == HKEY_CURRENT_USER;
    }
    void SetValue(std::string_view name, DWORD type, std::string_view data) override
    {
        m_key->SetValue(name, type, data);
    }
    void DeleteValue(std::string_view name) override { m_key->DeleteValue(name); }

private:
    Key& m_tree;
    Key* m_key = nullptr;
};

RegistryFileResult Load(std::string_view text, Key& tree)
{
    Loader loader{tree};
    return ReadRegistryFile(text, RegistryFileDialect::Hive, loader);
}

void Check(bool holds)
{
    if (!holds)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Key first;
    Load({reinterpret_cast<const char*>(data), size}, first);
    const std::string written = WriteRegistryFile(first, Root, RegistryFileForm::Hive);

    Key second;
    const RegistryFileResult result = Load(written, second);
    Check(result.isRegistryFile && result.problems.empty());
    Check(WriteRegistryFile(second, Root, RegistryFileForm::Hive) == written);

    Key exported;
    Check(Load(WriteRegistryFile(first, Root, RegistryFileForm::Windows), exported).isRegistryFile);
    return 0;
}
