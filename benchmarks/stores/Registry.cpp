#include "stores/Registry.h"

#include <RegistryHelper.h>
#include <cstdlib>
#include <fstream>

#include <Platform/Win32.h>

#include "SettingsStore.h"

namespace Benchmarks
{
void UseRegistry(const std::filesystem::path& folder)
{
    ::setenv("QUENLOR_REGISTRY_DIR", folder.c_str(), 1);
}

std::filesystem::path UserHive(const std::filesystem::path& folder)
{
    return folder / "HKEY_CURRENT_USER.reg";
}

namespace
{
using Quenlor::Utf8String;
using Quenlor::Fraxo::SharedUtilities::Native::RegistryHelper;

/// The user's settings in the registry of `folder`, which it makes that of the process.
class RegistryStore final : public SettingsStore
{
public:
    explicit RegistryStore(const std::filesystem::path& folder) : m_folder{folder} { UseRegistry(folder); }

    void Fill(int count) override
    {
        std::ofstream hive{UserHive(m_folder)};
        hive << "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\" << m_key.c_str() << "]\n";
        for (int i = 0; i < count; ++i)
            hive << '"' << Name(i) << "\"=\"" << Value(i) << "\"\n";
    }

    std::string Read(const std::string& name) override
    {
        const Utf8String value = RegistryHelper::GetStringValue(HKEY_CURRENT_USER, m_key, name, m_none);
        return {value.data(), value.length()};
    }

    void Write(const std::string& name, const std::string& value) override
    {
        RegistryHelper::SetStringValue(HKEY_CURRENT_USER, m_key, name, value);
    }

private:
    std::filesystem::path m_folder;
    Utf8String m_key = RegistryHelper::GetCurrentUserKey();
    Utf8String m_none;
};

const RegisterSettingsStore<RegistryStore> registration{"RegistryHelper", "", Role::Ours};
} // namespace
} // namespace Benchmarks
